/* The program of core 0: sends a text on a serial line, a bit at a time, and counts on the LEDs. It is
 * compiled for its symbols alone; what the waveform shows of it comes from the scenario. */

volatile unsigned serialLine;
volatile unsigned leds;

void sendByte(unsigned byte) {
    unsigned frame = byte << 1 | 0x200; /* a start bit, eight bits, a stop bit */
    for (int bit = 0; bit < 10; ++bit) {
        serialLine = frame & 1;
        frame >>= 1;
    }
}

void sendText(const char* text) {
    while (*text != 0)
        sendByte((unsigned char)*text++);
}

void blink(void) {
    for (;;)
        leds = leds + 1;
}

int main(void) {
    sendText("Hello, world!\n");
    return 0;
}

void _start(void) {
    main();
}
