// A program that gives each kind of hardening something to do.
#include <cstdio>
#include <cstring>

namespace {

template<int N>
int times(int number) {
    return number * N;
}

/// Where jumps arrive.
int (*volatile table[])(int) = {times<1>, times<2>, times<3>, times<4>, times<5>,
                                times<6>, times<7>, times<8>, times<9>, times<10>};

} // namespace

int main(int count, char** words) {
    char word[16];
    // Of a length that only the run knows.
    std::memcpy(word, words[0], std::strlen(words[0]) + 1);
    std::printf("%s %d\n", word, table[count % 10](count));
}
