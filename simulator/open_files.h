#pragma once

#include <cstddef>

/// Lets this program have `count` files and sockets open, where the system allows to ask for that.
/// Throws std::runtime_error with a text for the user when it may not have so many.
void allowOpenFiles(std::size_t count);
