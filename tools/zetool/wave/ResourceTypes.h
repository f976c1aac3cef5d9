#pragma once

#include <array>
#include <string_view>

// What a waiting thread waits on, as the plugin writes it: eight characters in a 64-bit value.
inline constexpr std::array<std::string_view, 12> s_resourceTypes = {
    "N/A     ", "PORT    ", "TIMER   ", "CHANEND ", "SYNC    ", "THREAD  ",
    "LOCK    ", "CLKBLK  ", "COPROC  ", "PS      ", "CONFIG  ", "INSTR   ",
};
