// The program around a search, as the search sees it: the input it polls, the reports it makes
// while it runs, and the hand-over of its result. Tools and tests search without one.
#pragma once

#include <string>

class SerialSearch;

class SearchHost {
 public:
  virtual ~SearchHost() = default;

  // Runs whatever input has arrived, without blocking; may throw search_aborted_exception.
  virtual void PollInput() = 0;

  virtual void ReportIterationStart(int iteration) = 0;
  virtual void ReportNewBestLine(const SerialSearch& search) = 0;
  virtual void ReportNewBestMoveCandidate(const std::string& move_text) = 0;
  virtual void ReportSearchInstability() = 0;
  virtual void ReportSearchFinished(const SerialSearch& search) = 0;

  virtual void SearchFinished(bool discard_result) = 0;
};
