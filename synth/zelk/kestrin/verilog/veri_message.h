// Messages of the scanner's files, which have a location but no node to raise them on.
#ifndef KESTRIN_VERILOG_VERI_MESSAGE_H
#define KESTRIN_VERILOG_VERI_MESSAGE_H

#include "util/linefile.h"

/// The id of a message by its format; null when the catalogue has none.
const char* veri_message_id(const char* format);
/// Forgets the table of formats until it is asked for again.
void veri_free_message_table();

// The format must be a string literal of the catalogue.
[[gnu::format(printf, 2, 3)]] void veri_error(linefile_type linefile, const char* format, ...);
[[gnu::format(printf, 2, 3)]] void veri_warning(linefile_type linefile, const char* format, ...);
[[gnu::format(printf, 2, 3)]] void veri_info(linefile_type linefile, const char* format, ...);

#endif
