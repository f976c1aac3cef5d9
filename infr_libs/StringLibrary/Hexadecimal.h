#pragma once

// Writes `length` bytes as twice as many lower-case digits, high digit first, and a zero byte behind them.
void asciiToHex(const char* from, char* to, unsigned length);

// Writes the bytes that `length` digits of either case stand for, and a zero byte behind them: `to` needs
// room for (length + 1) / 2 + 1 bytes. Any other character fails an assertion. With an odd length, the
// character behind the last digit is taken as the low digit of the last byte.
void hexToAscii(const char* from, char* to, unsigned length);
