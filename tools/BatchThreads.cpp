#include "tools/BatchThreads.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <condition_variable>
#include <cstring>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "time/TimeFunctions.h"
#include "tools/Batch.h"
#include "tools/ChunkLines.h"
#include "tools/ChunkRead.h"
#include "tools/LineNumbers.h"
#include "tools/SerialClock.h"

namespace zpdate {
namespace {

// A thread's share at a time, some 2,000 dates: a block's lines and output
// then stay in the core's caches from the read to the write. Three million
// RFC 1123 lines on two cores took 76 ms in chunks of 16 KB, 72 ms of 32 KB,
// 70 ms of 64 KB and of 128 KB, 72 ms of 256 KB and 77 ms of 1 MB.
constexpr size_t kChunkBytes = 1 << 16;

constexpr unsigned long kUnknown = ULONG_MAX;  // the number of chunks, until the end is seen

using Lock = std::unique_lock<std::mutex>;

// A block from its claim to its write. kParked: converted, its messages
// numbered from 1 and the lines before it not yet counted. kFixing: a thread
// moves those numbers on.
enum class Stage { kConverting, kParked, kFixing, kReady };

struct Block {
  std::unique_ptr<char[]> input;  // a stream's chunk: the byte before it, the chunk, what follows
  size_t got = 0;                 // a stream's chunk: the bytes read
  bool newline = false;           // a stream's chunk: it holds a '\n'
  StringBuffer text;
  std::string messages;
  BlockCount count{0, 0};
  unsigned long firstLine = 0;
  Stage stage = Stage::kReady;
};

// Room for a window on a chunk of `chunk` bytes, left uninitialised: pages
// are touched only as reads fill them.
std::unique_ptr<char[]> room(size_t chunk) {
  return std::unique_ptr<char[]>(new char[1 + chunk + kLookahead + 1]);
}

// Where a chunk is read: its window, and what it tells of the input's end.
struct Read {
  Window window;
  bool last;       // the input ends in this chunk, or a read failed in its window
  int error;       // errno of a failed read, else 0
  off_t inputEnd;  // a regular file: the offset just past its end, when `last`
};

// The stream as a thread saw it when it claimed a chunk.
struct Seen {
  unsigned long read, end;
  int error;
};

class Threads {
 public:
  Threads(const Settings& s, int fd, unsigned jobs, size_t chunk, off_t base, FdWriter& out,
          FdWriter& err)
      : m_settings(s),
        m_fd(fd),
        m_chunk(chunk),
        m_base(base),
        m_following((kLookahead + chunk - 1) / chunk),
        m_blocks(2 * jobs + 2 + m_following),
        m_out(out),
        m_err(err) {
    if (base < 0) {
      for (Block& b : m_blocks) b.input = room(chunk);
    }
    for (unsigned i = 1; i < jobs; ++i) m_workers.emplace_back([this] { work(); });
  }

  int run(const char* name) {
    work();
    for (std::thread& t : m_workers) t.join();
    m_clock.report();
    if (m_failed) return writeFailed(m_out, m_err);
    if (m_readError != 0) return readFailed(name, m_readError);
    if (m_base >= 0) lseek(m_fd, m_inputEnd, SEEK_SET);  // where one reader leaves it
    return m_status;
  }

 private:
  bool stream() const { return m_base < 0; }
  Block& block(unsigned long n) { return m_blocks[n % m_blocks.size()]; }
  const Block& block(unsigned long n) const { return m_blocks[n % m_blocks.size()]; }

  // What every thread does until the input is written or a write fails.
  void work() {
    const std::unique_ptr<char[]> window = stream() ? nullptr : room(m_chunk);
    std::vector<unsigned long> fixes;
    Lock lock(m_mutex);
    m_clock.start(SerialClock::kLock);
    while (!m_failed && m_written < m_end) {
      if (claimable()) {
        const unsigned long n = m_claimed++;
        block(n).stage = Stage::kConverting;
        const Seen seen{m_read, m_end, m_readError};
        release(lock);
        Read r = stream() ? followStream(n, seen) : readChunk(n, window.get());
        convert(block(n), r.window);
        acquire(lock);
        finish(n, r, fixes, lock);
      } else if (stream() && !m_reading && m_read < m_end && m_read < m_written + m_blocks.size()) {
        readNext(lock);
      } else {
        ++m_sleeping;
        m_clock.stop(SerialClock::kLock);
        m_changed.wait(lock);
        m_clock.start(SerialClock::kLock);
        --m_sleeping;
      }
    }
    m_clock.stop(SerialClock::kLock);
  }

  bool claimable() const {
    const unsigned long n = m_claimed;
    if (!stream()) return n < m_end && n < m_written + m_blocks.size();
    return n < m_read && followed(n);
  }

  // Whether the last line of the stream's chunk n ends within what has been
  // read: in the chunk, at a '\n' in a chunk after it, or kLookahead bytes
  // on (too long), or at the input's end. A chunk without a '\n' is full, so
  // this looks at m_following chunks at most.
  bool followed(unsigned long n) const {
    const Block& b = block(n);
    if (m_read == m_end || b.got == 0 || b.input[b.got] == '\n') return true;
    size_t after = 0;
    for (unsigned long j = n + 1; j < m_read && after < kLookahead; ++j) {
      if (block(j).newline) return true;
      after += block(j).got;
    }
    return after >= kLookahead;
  }

  // The stream's next chunk, in this thread's read turn.
  void readNext(Lock& lock) {
    m_reading = true;
    const unsigned long m = m_read;
    Block& b = block(m);
    release(lock);
    m_clock.start(SerialClock::kRead);
    int error = 0;
    bool ended;
    b.input[0] = m_lastByte;  // the byte before the chunk, for its first line
    b.got = readStream(m_fd, b.input.get() + 1, m_chunk, ended, error);
    b.newline = std::memchr(b.input.get() + 1, '\n', b.got) != nullptr;
    if (b.got > 0) m_lastByte = b.input[b.got];
    m_clock.stop(SerialClock::kRead);
    acquire(lock);
    m_reading = false;
    ++m_read;
    if (ended) {
      m_end = m_read;
      m_readError = error;
    }
    wake();
  }

  // Chunk n of a stream, read, and a copy of what follows it from the next
  // chunks (followed(n)): those stay until n is written.
  Read followStream(unsigned long n, const Seen& seen) {
    Block& b = block(n);
    size_t copied = 0;
    bool found = b.got == 0 || b.input[b.got] == '\n', ended = n + 1 == seen.end;
    for (unsigned long j = n + 1; !found && copied < kLookahead && j < seen.read; ++j) {
      const Block& next = block(j);
      const size_t take = std::min(kLookahead - copied, next.got);
      std::memcpy(b.input.get() + 1 + b.got + copied, next.input.get() + 1, take);
      copied += take;
      found = next.newline;
      ended = take == next.got && j + 1 == seen.end;
    }
    const bool first = n == 0;
    const Window::End end = !ended ? Window::kMore : seen.error ? Window::kError : Window::kEnd;
    Window w{b.input.get() + (first ? 1 : 0), (first ? 0 : 1) + b.got + copied, b.got, first, end};
    return {w, false, 0, 0};  // the read turn saw the end
  }

  // Chunk n of a regular file and what follows it, read at their offset.
  Read readChunk(unsigned long n, char* buffer) const {
    const bool first = n == 0;
    const off_t start = m_base + static_cast<off_t>(n * m_chunk);
    const off_t from = first ? start : start - 1;
    const size_t want = (first ? 0 : 1) + m_chunk + kLookahead;
    int error = 0;
    const size_t got = readAt(m_fd, buffer, want, from, error);
    const size_t before = first ? 0 : 1;
    const size_t chunk = got > before ? std::min(got - before, m_chunk) : 0;
    const Window::End end = got == want ? Window::kMore : error ? Window::kError : Window::kEnd;
    const off_t inputEnd = from + static_cast<off_t>(got);
    const bool last =
        error != 0 || (end == Window::kEnd && inputEnd <= start + static_cast<off_t>(m_chunk));
    return {{buffer, got, chunk, first, end}, last, error, inputEnd};
  }

  // Outside the lock: the block's lines, numbered from 1.
  void convert(Block& b, Window& w) {
    const char* lines;
    size_t size;
    chunkLines(w, lines, size);
    b.text.clear();
    b.messages.clear();
    b.count = convertBlock(m_settings, lines, size, 1, b.text, b.messages);
  }

  // Block n is converted: counts the lines before the blocks now reachable,
  // moves their messages' numbers on, then writes what is ready in order.
  void finish(unsigned long n, const Read& r, std::vector<unsigned long>& fixes, Lock& lock) {
    Block& b = block(n);
    b.stage = b.messages.empty() ? Stage::kReady : Stage::kParked;
    if (r.last && n + 1 < m_end) {
      m_end = n + 1;
      m_readError = r.error;
      m_inputEnd = r.inputEnd;
      wake();
    }
    fixes.clear();
    for (; m_counted < m_claimed && block(m_counted).stage != Stage::kConverting; ++m_counted) {
      Block& c = block(m_counted);
      c.firstLine = m_nextLine;
      m_nextLine += c.count.lines;
      if (c.stage == Stage::kParked) {
        c.stage = Stage::kFixing;
        fixes.push_back(m_counted);
      }
    }
    for (const unsigned long k : fixes) {
      Block& c = block(k);
      release(lock);
      moveLineNumbers(c.messages, c.firstLine);
      acquire(lock);
      c.stage = Stage::kReady;
    }
    writeReady(lock);
  }

  // The write turn: the next blocks, in order, while they are ready.
  void writeReady(Lock& lock) {
    if (m_writing) return;  // its holder sees this block when it comes back
    m_writing = true;
    while (!m_failed && m_written < m_end && m_written < m_claimed &&
           block(m_written).stage == Stage::kReady) {
      const Block& b = block(m_written);
      release(lock);
      m_clock.start(SerialClock::kWrite);
      const bool written = writeBlock(b.count, b.text, b.messages, m_out, m_err, m_status);
      m_clock.stop(SerialClock::kWrite);
      acquire(lock);
      m_failed = !written;
      ++m_written;
      wake();
    }
    m_writing = false;
  }

  void release(Lock& lock) {
    m_clock.stop(SerialClock::kLock);
    lock.unlock();
  }

  void acquire(Lock& lock) {
    lock.lock();
    m_clock.start(SerialClock::kLock);
  }

  void wake() {
    if (m_sleeping > 0) m_changed.notify_all();
  }

  const Settings& m_settings;
  const int m_fd;
  const size_t m_chunk;
  const off_t m_base;               // a regular file: where its input starts; a stream: -1
  const unsigned long m_following;  // chunks a window may need past its own
  std::vector<Block> m_blocks;      // block n in m_blocks[n % size] from its claim to its write
  FdWriter& m_out;
  FdWriter& m_err;
  std::vector<std::thread> m_workers;
  SerialClock m_clock;

  std::mutex m_mutex;  // guards what follows but the turns' own state
  std::condition_variable m_changed;
  unsigned m_sleeping = 0;
  unsigned long m_claimed = 0, m_read = 0, m_written = 0, m_end = kUnknown;
  unsigned long m_counted = 0, m_nextLine = 1;  // the blocks before m_counted are counted
  bool m_reading = false, m_writing = false, m_failed = false;
  int m_readError = 0;
  off_t m_inputEnd = 0;
  char m_lastByte = '\n';  // the read turn's: the last byte read
  int m_status = 0;        // the write turn's
};

}  // namespace

int convertOnThreads(const Settings& s, int fd, const char* name, unsigned jobs, size_t chunkBytes,
                     FdWriter& out, FdWriter& err) {
  const size_t chunk =
      chunkBytes == 0 ? kChunkBytes : std::clamp(chunkBytes, kMinChunk, size_t{1} << 20);
  struct stat st;
  const bool known = fstat(fd, &st) == 0;
  off_t base = -1;
  // A regular file with a size (not one of /proc's) is read at offsets.
  if (known && S_ISREG(st.st_mode) && st.st_size > 0) base = lseek(fd, 0, SEEK_CUR);
#ifdef F_SETPIPE_SZ
  // A pipe of 1 MB (the most Linux grants by default) lets its writer run
  // ahead: with 64 KB, `cat` and the reading turn waited on each other.
  if (known && S_ISFIFO(st.st_mode)) fcntl(fd, F_SETPIPE_SZ, 1 << 20);
#endif
  // The local zone is set up before the threads start. Two first local
  // conversions at once would both call tzset, which the C library allows
  // under a lock of its own that ThreadSanitizer cannot see.
  zp_tzset();
  Threads threads(s, fd, jobs, chunk, base, out, err);
  return threads.run(name);
}

}  // namespace zpdate
