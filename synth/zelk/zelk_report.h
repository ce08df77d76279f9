// The two ways in which the adapter raises a message of its own.
#ifndef ZELK_REPORT_H
#define ZELK_REPORT_H

class MSG_BASE;

/// Reports a message at once and deletes it.
void zelk_report(MSG_BASE* message);
/// The same at a place in a file; line 0 is the file as a whole.
void zelk_report_at(MSG_BASE* message, const char* file, int line);

#endif
