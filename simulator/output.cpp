#include "simulator/output.h"

#include <iostream>

void printLine(const std::string &line)
{
    std::cout << line << '\n' << std::flush;
}

void reportLine(const std::string &line)
{
    std::cerr << line << '\n' << std::flush;
}
