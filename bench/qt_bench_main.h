// The main of a benchmark that needs a QApplication: offscreen unless a
// platform is set, then every benchmark the command line selects.
#pragma once

#include <QApplication>
#include <benchmark/benchmark.h>

inline int RunQtBenchmarks(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
