// Stands for the precompiled headers alone.
int main() {
    return 0;
}
