// In Ghostscript's place: does what a document asks for, and says what came of it as Ghostscript
// says its errors.
#include <fcntl.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include "tests/worker/attacker/attack.h"

int main() {
    std::ifstream input("input");
    const std::string document{std::istreambuf_iterator<char>(input), {}};
    const int target = open("output", O_WRONLY | O_CREAT, 0600);
    try {
        const std::string outcome = labelcut::test::carryOutDeed(document, target);
        std::printf("Error: /attack in %s\n", outcome.c_str());
    } catch (const std::bad_alloc&) {
        std::printf("Error: /VMerror in attack\n");
    }
    return 1;
}
