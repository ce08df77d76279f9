// What one stage of a run takes: time and peak memory.
#ifndef HOST_STAGE_H
#define HOST_STAGE_H

#include <string>
#include <vector>

struct STAGE_TIME {
  std::string name;
  double seconds = 0;
  double peak_megabytes = 0; // of the process while the stage ran
};

/// Measures a stage from its making to its end and appends what it took. Stages do not nest: the peak is the process's.
class STAGE {
public:
  STAGE(std::vector<STAGE_TIME>& times, std::string name);
  ~STAGE();
  STAGE(const STAGE&) = delete;
  STAGE& operator=(const STAGE&) = delete;

private:
  std::vector<STAGE_TIME>& m_times;
  std::string m_name;
  double m_start;
};

#endif
