#include <iostream>

#include "desk/command_line.h"

int main(int count, char** words) {
  return desk::RunVgldesk({words + 1, words + count}, std::cin, std::cout, std::cerr);
}
