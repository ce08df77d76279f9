// Memory initialisation files: the initial contents of inferred memories as files of the host's format.
#ifndef ZELK_MIF_H
#define ZELK_MIF_H

#include <string>

struct MemoryContents;

/// Writes the file and gives its name; empty when it cannot be written. An unchanged design gets the same file again;
/// a file that this function did not write is never overwritten.
std::string zelk_generate_mif(const MemoryContents& contents);

#endif
