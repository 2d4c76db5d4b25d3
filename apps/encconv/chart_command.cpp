#include "apps/encconv/chart_command.h"

#include "apps/encconv/error_report.h"
#include "apps/encconv/file_io.h"

namespace tool {

int runChart(const Options& options, Console& console) {
  const std::optional<Chart> chart = buildChart(options.fromCodePage);
  if (!chart) {
    console.report(
        "--chart: " + describeCodePage(options.fromCodePage) +
        " has no chart; encodings have one whose codes mean the same wherever they stand");
    return kUsage;
  }
  OutputFile output;
  const bool isPage = !options.chartHtml.empty();
  if (!output.open(options.chartHtml) ||
      !output.writeText(isPage ? chartAsHtml(*chart) : chartAsText(*chart)) || !output.commit()) {
    console.report(output.error());
    return kUsage;
  }
  return kDone;
}

}  // namespace tool
