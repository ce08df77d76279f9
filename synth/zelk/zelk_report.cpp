// Reports messages that the adapter raises itself.
#include "zelk_report.h"

#include <memory>

#include "msg.h"

void zelk_report(MSG_BASE* message) {
  std::unique_ptr<MSG_BASE> owned(message);
  owned->report(0);
}

void zelk_report_at(MSG_BASE* message, const char* file, int line) {
  std::unique_ptr<MSG_BASE> owned(message);
  MSG_TEXT_LOCATION_SCHEMA schema(file, line, 0);
  owned->set_location(file, &schema, "", "");
  owned->report(0);
}
