// LogBase: the library's logging interface. A log holds contexts (named
// groups, opened and closed in pairs) and named entries within them.
//
//   log.EnterContext("expires", 1);
//   log.LogDataStr("gmtDateTime", "3/7/2024 9:05:03");
//   log.LeaveContext();
//
// LogNull discards everything; LogRecorder keeps everything and renders it
// as indented text.
#pragma once

#include <string>
#include <vector>

class LogBase {
 public:
  virtual ~LogBase();

  // Opens a context named `tag`. The second argument is a verbosity level:
  // 1 is ordinary detail. Nested contexts are allowed.
  virtual void EnterContext(const char* tag, int level) = 0;
  // Closes the context the last EnterContext opened.
  virtual void LeaveContext() = 0;
  // A named text entry in the open context.
  virtual void LogDataStr(const char* name, const char* value) = 0;

  // A named number entry: the number in decimal, through LogDataStr.
  void LogDataLong(const char* name, long value);
};

class LogNull : public LogBase {
 public:
  void EnterContext(const char*, int) override {}
  void LeaveContext() override {}
  void LogDataStr(const char*, const char*) override {}
};

class LogRecorder : public LogBase {
 public:
  struct Line {
    int depth;          // nesting level; 0 outside any context
    std::string name;   // the context's tag, or the entry's name
    std::string value;  // the entry's text; empty for a context
    bool isContext;
  };

  void EnterContext(const char* tag, int level) override;
  void LeaveContext() override;
  void LogDataStr(const char* name, const char* value) override;

  const std::vector<Line>& lines() const { return m_lines; }
  // Each context as "tag:" and each entry as "name: value", two spaces of
  // indent per level, one line each.
  std::string render() const;
  void clear();

 private:
  std::vector<Line> m_lines;
  int m_depth = 0;
};
