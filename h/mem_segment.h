// The host's memory segments. Objects that can be cloned take one; the segment says where the host would like the copy
// to live. This host allocates everything from the heap, so a segment carries nothing.
#ifndef MEM_SEGMENT_H
#define MEM_SEGMENT_H

class MEM_SEGMENT {};

#endif
