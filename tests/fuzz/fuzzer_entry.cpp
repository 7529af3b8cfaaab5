// The fuzzer's entry: one program for each target, which the build names.
#include "tests/fuzz/targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  vgl::fuzz::VGL_FUZZ_TARGET(data, size);
  return 0;
}
