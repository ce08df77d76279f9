// Messages that the host itself raises, beside those of the library. Their texts and numbers are one table.
#ifndef HOST_MESSAGES_H
#define HOST_MESSAGES_H

#include <string>
#include <vector>

enum HOST_MESSAGE_ENUM {
#define HOST_MESSAGE(severity, number, name, text) HOST_MESSAGE_##name = number,
#include "host_messages.def"
#undef HOST_MESSAGE
};

/// Reports a message at once. An empty file is no place.
void report_host_message(HOST_MESSAGE_ENUM message, const std::vector<std::string>& arguments = {},
                         const std::string& file = "", int line = 0);

#endif
