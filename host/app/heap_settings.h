// How the program takes memory from the system.
#ifndef HOST_APP_HEAP_SETTINGS_H
#define HOST_APP_HEAP_SETTINGS_H

/// Lets the heap grow in large steps and keep what it has. A netlist is millions of small objects that are walked all
/// the time: in steps of the default size each page of 4 KB is faulted in by itself and none becomes a large page,
/// which costs half of the run time of a large design. To be called before the first large allocation.
void prefer_large_pages();

#endif
