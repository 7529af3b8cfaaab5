// The library that the contract tests of modules load on Windows: an export with a name and one
// without (test_library.def).
#include <cstdint>

extern "C" {

std::int32_t Doubled(std::int32_t number) { return 2 * number; }
std::int32_t Tripled(std::int32_t number) { return 3 * number; }

}  // extern "C"
