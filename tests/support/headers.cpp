// Nothing: only the headers that tests have in common are compiled with it.
int main() {}
