// What a run costs before it does anything: the loading of the libraries.
int main() {}
