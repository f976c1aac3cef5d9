/* The programs of the two-node run: functions whose names share their first four characters. */
void blinkForever(void) {}
void blinkOnce(void) {}
int main(void) {
    blinkForever();
    blinkOnce();
    return 0;
}
