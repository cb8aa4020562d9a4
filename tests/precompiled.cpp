// Stands for the slow headers of every test, which are compiled with it once (CMakeLists.txt).
int main() {}
