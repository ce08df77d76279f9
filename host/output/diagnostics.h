// The forms in which the messages of a run are presented, and what these forms share.
#ifndef HOST_DIAGNOSTICS_H
#define HOST_DIAGNOSTICS_H

#include <cstdio>
#include <memory>
#include <string>

#include "msg.h"

/// Which messages are shown: with DETAIL_QUIET errors and warnings only, and the notes that belong to them.
enum DIAGNOSTICS_DETAIL { DETAIL_ALL, DETAIL_QUIET };

/// The word for a kind (MSG_KIND_ENUM): "error", "warning", "info".
const char* severity_word(int kind);

/// A message that only makes sense with the one before it, such as where an object was declared.
bool is_note(const MSG_BASE& message);

/// Where an internal error arose, as text: the area, and file and line where they are known.
std::string internal_error_place(const std::string& area, const std::string& file, int line);

/// False for what DETAIL_QUIET leaves out.
bool is_shown(const MSG_BASE& message, DIAGNOSTICS_DETAIL detail);

/// The front end's own id of a message, such as "VERI-1018"; empty for messages that have none.
std::string kernel_id_of(unsigned number);

/// Messages as one JSON document, or as one in the format that code review tools read (SARIF 2.1.0). They are
/// written to the stream, which stays the caller's, when the run is over.
std::unique_ptr<MSG_SINK> make_json_diagnostics(FILE* stream, DIAGNOSTICS_DETAIL detail);
std::unique_ptr<MSG_SINK> make_sarif_diagnostics(FILE* stream, DIAGNOSTICS_DETAIL detail);

#endif
