// Charts of code pages: encconv --chart.
#ifndef APPS_ENCCONV_CHART_COMMAND_H_
#define APPS_ENCCONV_CHART_COMMAND_H_

#include <string>

#include "apps/encconv/chart_model.h"
#include "apps/encconv/console.h"
#include "apps/encconv/options.h"

namespace tool {

// The chart as text for a terminal, and as one self-contained HTML page; both in UTF-8.
std::string chartAsText(const Chart& chart);
std::string chartAsHtml(const Chart& chart);

// Prints the chart, or writes the page. Returns the exit status.
int runChart(const Options& options, Console& console);

}  // namespace tool

#endif  // APPS_ENCCONV_CHART_COMMAND_H_
