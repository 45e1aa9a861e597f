#include "tools/Batch.h"

#include <condition_variable>
#include <cstdio>
#include <cstring>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace zpdate {
namespace {

int readFailed(const char* name, int error) {
  std::fprintf(stderr, "zpdate: %s: %s\n", name, std::strerror(error));
  return 1;
}

// A block's output and then its messages; false after a failed write.
bool writeBlock(const BlockCount& count, const StringBuffer& text, const std::string& messages,
                FdWriter& out, FdWriter& err, int& status) {
  if (count.failed > 0) status = 1;
  out.writeThrough(text.getString(), text.getSize());
  err.write(messages);
  if (!out.flush()) return false;
  err.flush();
  return true;
}

int convertOnThisThread(const Settings& s, LineReader& reader, const char* name, FdWriter& out,
                        FdWriter& err) {
  StringBuffer text;
  std::string messages;
  unsigned long line = 1;
  int status = 0;
  const char* data;
  size_t size;
  while (reader.next(data, size)) {
    text.clear();
    messages.clear();
    const BlockCount count = convertBlock(s, data, size, line, text, messages);
    line += count.lines;
    if (!writeBlock(count, text, messages, out, err, status)) return writeFailed(out, err);
  }
  return reader.error() != 0 ? readFailed(name, reader.error()) : status;
}

// A worker's share at a time: the reader's blocks gathered up to this size,
// some 2,000 dates. A block's lines and output then stay in the core's
// caches from the read to the write: a million RFC 1123 lines on two cores
// took 40 ms with 64 KB blocks, 43 ms with 128 KB, 50 ms with 256 KB and
// 69 ms with 1 MB (two single-threaded runs on halves of the lines: 40 ms).
constexpr size_t kBlockBytes = 1 << 16;

// The '\n' in [p, end), one memchr from each to the next: on the reading
// thread, which every worker waits for, std::count went byte by byte.
unsigned long countLines(const char* p, const char* end) {
  unsigned long n = 0;
  for (; (p = static_cast<const char*>(std::memchr(p, '\n', static_cast<size_t>(end - p)))); ++p) {
    ++n;
  }
  return n;
}

// One block on its way from the reader through a worker to the writer.
struct Block {
  std::vector<char> lines;  // a copy: the reader's buffer is reused
  unsigned long firstLine = 0;
  StringBuffer text;
  std::string messages;
  BlockCount count{0, 0};
  bool converted = false;
};

// The calling thread reads blocks into a ring of slots and writes them back
// out in order; it and jobs - 1 workers convert whatever block is next in
// the queue, so that there is one converting thread per job and none that
// only waits.
// Block n lives in slot n % size until written, so the ring bounds memory
// and no slot is refilled before its block has left.
class Pipeline {
 public:
  Pipeline(const Settings& s, unsigned jobs) : m_settings(s), m_ring(2 * jobs + 2) {
    // Room up front: a block that grew by doubling would fault its pages in
    // again each time, for about as many bytes as it converts. (Its output
    // grows once, and keeps its room from block to block.)
    for (Block& b : m_ring) b.lines.reserve(kBlockBytes + kMaxLine + (1 << 16) + 3);
    for (unsigned i = 1; i < jobs; ++i) m_workers.emplace_back([this] { work(); });
  }

  ~Pipeline() {
    {
      const std::lock_guard<std::mutex> lock(m_mutex);
      m_stopping = true;
    }
    m_queued.notify_all();
    for (std::thread& t : m_workers) t.join();
  }

  int run(LineReader& reader, const char* name, FdWriter& out, FdWriter& err) {
    unsigned long read = 0, written = 0, line = 1;
    int status = 0;
    bool more = true;
    const char* data;
    size_t size;
    for (;;) {
      if (more && read - written < m_ring.size() && (more = reader.next(data, size))) {
        Block& b = m_ring[read % m_ring.size()];
        b.firstLine = line;
        b.lines.clear();
        do {
          b.lines.insert(b.lines.end(), data, data + size);
          line += countLines(data, data + size);
        } while (b.lines.size() < kBlockBytes && (more = reader.next(data, size)));
        queue(read++);
        continue;
      }
      if (written == read) break;  // all read (or the ring full) and all written
      Block& b = m_ring[written % m_ring.size()];
      convertUntil(b);
      if (!writeBlock(b.count, b.text, b.messages, out, err, status)) return writeFailed(out, err);
      ++written;
    }
    return reader.error() != 0 ? readFailed(name, reader.error()) : status;
  }

 private:
  void queue(unsigned long n) {
    {
      const std::lock_guard<std::mutex> lock(m_mutex);
      m_ring[n % m_ring.size()].converted = false;
      m_waiting.push_back(n);
    }
    m_queued.notify_one();
  }

  // Converts waiting blocks until `b` is converted, here or by a worker;
  // sleeps only when there is none left to take.
  void convertUntil(const Block& b) {
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!b.converted) {
      if (m_waiting.empty()) {
        m_convertedSignal.wait(lock);
        continue;
      }
      const unsigned long n = m_waiting.front();
      m_waiting.pop_front();
      lock.unlock();
      convert(n);
      lock.lock();
    }
  }

  void work() {
    for (;;) {
      unsigned long n;
      {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_queued.wait(lock, [&] { return m_stopping || !m_waiting.empty(); });
        if (m_waiting.empty()) return;  // stopping, and nothing left to do
        n = m_waiting.front();
        m_waiting.pop_front();
      }
      convert(n);
    }
  }

  void convert(unsigned long n) {
    Block& b = m_ring[n % m_ring.size()];
    b.text.clear();
    b.messages.clear();
    b.count =
        convertBlock(m_settings, b.lines.data(), b.lines.size(), b.firstLine, b.text, b.messages);
    {
      const std::lock_guard<std::mutex> lock(m_mutex);
      b.converted = true;
    }
    m_convertedSignal.notify_one();
  }

  const Settings& m_settings;
  std::vector<Block> m_ring;
  std::vector<std::thread> m_workers;
  std::mutex m_mutex;  // guards m_waiting, m_stopping and every Block::converted
  std::condition_variable m_queued, m_convertedSignal;
  std::deque<unsigned long> m_waiting;
  bool m_stopping = false;
};

}  // namespace

int writeFailed(FdWriter& out, FdWriter& err) {
  err.flush();
  std::fprintf(stderr, "zpdate: write error: %s\n", std::strerror(out.error()));
  return 1;
}

int convertStream(const Settings& s, int fd, const char* name, unsigned jobs, FdWriter& out,
                  FdWriter& err) {
  LineReader reader(fd);
  if (jobs <= 1) return convertOnThisThread(s, reader, name, out, err);
  Pipeline pipeline(s, jobs);
  return pipeline.run(reader, name, out, err);
}

}  // namespace zpdate
