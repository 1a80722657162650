// A program that does nothing and loads every library that doccam may ever need.
int main() {
    return 0;
}
