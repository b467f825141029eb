// How the program treats memory that was freed.
#pragma once

namespace vornwout {

/// Keeps freed memory for the next use instead of giving it back to the system at once. Reading a
/// document takes and frees megabytes for every part; getting them anew from the system each time
/// cost as much as the reading itself.
void keepFreedMemory();

}  // namespace vornwout
