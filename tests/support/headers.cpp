// Nothing but the headers that every test reads, for the compiler to remember.
int main() {
    return 0;
}
