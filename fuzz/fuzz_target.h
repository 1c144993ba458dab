// What a fuzz target is: one function that takes any bytes and neither crashes, hangs nor takes
// more memory than they are worth.
//
// Linked with clang's libFuzzer in the preset `fuzz`, and with replay.cpp, which goes through the
// target's corpus, everywhere else.
#pragma once

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
