// The program behind a precompiled header that others reuse; it does nothing itself.
int main() {}
