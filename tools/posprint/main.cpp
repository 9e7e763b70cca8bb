// posprint: the command-line host (filled in by the host work).
int main() { return 0; }
