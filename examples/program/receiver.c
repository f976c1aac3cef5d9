/* The program of core 1: puts the bits of the serial line together to bytes and hands them on. */

volatile unsigned serialLine;
volatile unsigned lastByte;

unsigned receiveByte(void) {
    unsigned byte = 0;
    for (int bit = 0; bit < 8; ++bit)
        byte |= serialLine << bit;
    return byte;
}

void append(unsigned byte) {
    lastByte = byte;
}

int main(void) {
    for (;;)
        append(receiveByte());
}

void _start(void) {
    main();
}
