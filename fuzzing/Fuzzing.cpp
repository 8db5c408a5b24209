// The entry that libFuzzer calls.
#include "Fuzzing.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tarnwell::fuzzing::Run({reinterpret_cast<const char*>(data), size});
    return 0;
}
