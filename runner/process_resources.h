// What the program asks of the system for itself: memory and open files.
#pragma once

namespace vornwout {

/// Keeps freed memory for the next use instead of giving it back to the system at once. Reading a
/// document takes and frees megabytes for every part; getting them anew from the system each time
/// cost as much as the reading itself.
void keepFreedMemory();

/// Lets as many files be open as the system allows at all. An export holds all its files open until
/// it puts them in place together, and may have an image for each of a thousand charts.
void allowManyOpenFiles();

}  // namespace vornwout
