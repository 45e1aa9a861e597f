// The main of a fuzz target built without libFuzzer: runs every input once
// through LLVMFuzzerTestOneInput, so the targets replay their corpora as
// plain programs (any compiler, any sanitizer, CTest).
//
//   zephal_fuzz_rfc822 fuzz/corpus/rfc822 crash-1234
//
// Arguments are files, or directories whose regular files are all replayed
// (not recursively), in name order. Arguments starting with '-' are libFuzzer
// options and are skipped, so one command line serves both builds. Finding
// no input at all is a failure: a mistyped corpus path must not pass.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);
// Optional, as for libFuzzer: a target that sets up its process defines it.
extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int* argc, char*** argv);

namespace fs = std::filesystem;

namespace {

bool readFile(const fs::path& path, std::vector<uint8_t>& bytes) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  return !in.bad();
}

}  // namespace

int main(int argc, char** argv) {
  if (LLVMFuzzerInitialize != nullptr) LLVMFuzzerInitialize(&argc, &argv);
  std::vector<fs::path> inputs;
  for (int i = 1; i < argc; ++i) {
    if (argv[i][0] == '-') continue;
    const fs::path arg(argv[i]);
    std::error_code ec;
    if (fs::is_directory(arg, ec)) {
      for (const fs::directory_entry& e : fs::directory_iterator(arg, ec)) {
        if (e.is_regular_file(ec)) inputs.push_back(e.path());
      }
    } else if (fs::is_regular_file(arg, ec)) {
      inputs.push_back(arg);
    } else {
      std::fprintf(stderr, "%s: no such file or directory\n", argv[i]);
      return 1;
    }
    if (ec) {
      std::fprintf(stderr, "%s: %s\n", argv[i], ec.message().c_str());
      return 1;
    }
  }
  std::sort(inputs.begin(), inputs.end());
  if (inputs.empty()) {
    std::fprintf(stderr, "usage: %s <corpus directory or file>...: no inputs found\n", argv[0]);
    return 1;
  }

  std::vector<uint8_t> bytes;
  for (const fs::path& path : inputs) {
    if (!readFile(path, bytes)) {
      std::fprintf(stderr, "%s: cannot read\n", path.c_str());
      return 1;
    }
    // A copy of exactly the file's size, so the target's reads are checked
    // against the input's end as libFuzzer checks them.
    const std::unique_ptr<uint8_t[]> exact(new uint8_t[bytes.size()]);
    std::copy(bytes.begin(), bytes.end(), exact.get());
    std::fprintf(stderr, "replaying %s (%zu bytes)\n", path.c_str(), bytes.size());
    LLVMFuzzerTestOneInput(exact.get(), bytes.size());
  }
  std::printf("%zu inputs replayed\n", inputs.size());
  return 0;
}
