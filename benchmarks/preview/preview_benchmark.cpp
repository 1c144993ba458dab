// How soon a preview shows rows, how smoothly it scrolls, and the memory that it takes.
//
//   preview_benchmark rows GRAPH ACTION [--limit N] [--library FILE]
//   preview_benchmark scroll [--rows N] [--columns N]
//
// Offscreen, at 1280 x 800, without a graphics card.
#include <algorithm>
#include <cmath>
#include <ctime>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <fmt/core.h>
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QHeaderView>
#include <QScrollBar>
#include <QTimer>

#include "gui/preview/preview_cache.h"
#include "gui/preview/preview_header.h"
#include "gui/preview/preview_table.h"
#include "gui/preview/preview_view.h"
#include "host/contract/host_session.h"
#include "host/tables/table_actions.h"

namespace kelvarin {
namespace {

double mebibytes(const char* key) {
  QFile status(QStringLiteral("/proc/self/status"));
  if (!status.open(QIODevice::ReadOnly)) {
    return 0.0;
  }
  for (const QByteArray& line : status.readAll().split('\n')) {
    if (line.startsWith(key)) {
      return line.mid(line.indexOf(':') + 1).trimmed().split(' ').front().toDouble() / 1024.0;
    }
  }
  return 0.0;
}

// Numbers, keys and texts that follow from the row and the column.
class ComputedRows final : public PreviewRows {
 public:
  ComputedRows(long long rows, int columns) : m_rowCount(rows) {
    constexpr MetaTypeColumn kTypes[] = {MetaTypeColumn::number, MetaTypeColumn::key,
                                         MetaTypeColumn::text};
    for (int i = 0; i < columns; ++i) {
      m_columns.push_back({QStringLiteral("column %1").arg(i), kTypes[i % 3]});
    }
  }

  const Columns& columns() const override { return m_columns; }
  long long rowCount() const override { return m_rowCount; }
  PreviewValue value(long long row, int column) override {
    auto bytes = std::make_shared<std::vector<unsigned char>>(make(row, column));
    const unsigned char* data = bytes->empty() ? nullptr : bytes->data();
    return {true, data, std::move(bytes)};
  }
  void setListener(std::function<void()>) override {}
  bool visit(int column, long long first, long long end, const Visitor& visitor) const override {
    for (long long row = first; row < end; ++row) {
      if (!visitor(row, make(row, column).data())) {
        return false;
      }
    }
    return true;
  }
  bool visit(int column, std::span<const std::uint32_t> rows,
             const Visitor& visitor) const override {
    return std::all_of(rows.begin(), rows.end(),
                       [&](std::uint32_t row) { return visitor(row, make(row, column).data()); });
  }

 private:
  std::vector<unsigned char> make(long long row, int column) const {
    const auto mixed = static_cast<std::uint32_t>(row * 2654435761 + column * 40503);
    switch (m_columns[static_cast<std::size_t>(column)].meta) {
      case MetaTypeColumn::number:
        return bytesOf(std::sin(static_cast<double>(mixed)) * 1000.0);
      case MetaTypeColumn::key:
        return bytesOf(mixed % 100'000);
      default:
        break;
    }
    const std::string text = fmt::format("a text of row {} in column {}", row, column);
    std::vector<unsigned char> bytes = bytesOf(static_cast<std::uint32_t>(text.size()));
    bytes.insert(bytes.end(), text.begin(), text.end());
    return bytes;
  }
  template <typename Value>
  static std::vector<unsigned char> bytesOf(Value value) {
    std::vector<unsigned char> bytes(sizeof value);
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
  }

  Columns m_columns;
  long long m_rowCount;
};

// Of this thread alone, so that a busy machine changes the figures little.
double cpuMilliseconds() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

void printFrames(const char* what, std::vector<double> frames) {
  std::sort(frames.begin(), frames.end());
  fmt::print("{:<28} median {:6.2f} ms   99 % {:6.2f} ms   longest {:6.2f} ms\n", what,
             frames[frames.size() / 2], frames[frames.size() * 99 / 100], frames.back());
}

// Each frame is one step of scrolling, laid out and drawn.
template <typename Step>
std::vector<double> measuredFrames(int count, Step step) {
  std::vector<double> frames;
  for (int i = 0; i < count; ++i) {
    const double start = cpuMilliseconds();
    step(i);
    QApplication::processEvents();
    frames.push_back(cpuMilliseconds() - start);
  }
  return frames;
}

int scroll(long long rows, int columns, int frames) {
  BackgroundQueue queue;
  PreviewTable table(queue);
  table.resize(1280, 800);
  QElapsedTimer timer;
  timer.start();
  table.setRows(std::make_shared<ComputedRows>(rows, columns));
  table.show();
  QApplication::processEvents();
  fmt::print("{} rows, {} columns shown after {} ms\n", rows, columns, timer.elapsed());
  QScrollBar& down = *table.view().verticalScrollBar();
  QScrollBar& right = *table.view().horizontalScrollBar();
  printFrames("wheel down", measuredFrames(frames, [&](int) { down.setValue(down.value() + 3); }));
  printFrames("drag the bar down", measuredFrames(frames, [&](int i) {
                down.setValue(static_cast<int>(1.0 * i / frames * down.maximum()));
              }));
  printFrames("drag the bar right", measuredFrames(frames, [&](int i) {
                right.setValue(static_cast<int>(1.0 * i / frames * right.maximum()));
              }));
  fmt::print("memory {:.0f} MiB at most\n", mebibytes("VmHWM"));
  return 0;
}

struct RowsRequested {
  std::string graph;
  std::string action;
  std::string plugin;
  long long limit = 1000;
};

int rows(const RowsRequested& wanted) {
  std::unique_ptr<PluginLibrary> plugin;
  if (!wanted.plugin.empty()) {
    auto loaded = PluginLibrary::load(QString::fromStdString(wanted.plugin));
    if (!loaded) {
      fmt::print(stderr, "{}\n", loaded.error().toStdString());
      return 1;
    }
    plugin = std::move(*loaded);
  }
  const ActionCatalogue catalogue(std::move(plugin), makeTableActions());
  EditedGraph graph(catalogue);
  EditServices services(graph, catalogue);
  HostSession session(&services);
  const HostSession::Scope scope(&session);
  QFile file(QString::fromStdString(wanted.graph));
  if (!file.open(QIODevice::ReadOnly) || !graph.load(file.readAll(), file.fileName())) {
    fmt::print(stderr, "{}: no graph.\n", wanted.graph);
    return 1;
  }
  BackgroundQueue loader;
  BackgroundQueue computing;
  PreviewTable table(computing);
  table.resize(1280, 300);
  table.show();
  QApplication::processEvents();
  const double idle = mebibytes("VmRSS");

  PreviewCache cache(graph, services,
                     {std::make_shared<PreviewMemory>(kPreviewMemory), loader, computing});
  QElapsedTimer timer;
  timer.start();
  QString reason;
  const auto preview = cache.preview({graph.idOf(QString::fromStdString(wanted.action)), 0, true},
                                     wanted.limit, &reason);
  if (preview == nullptr) {
    fmt::print(stderr, "{}\n", reason.toStdString());
    return 1;
  }
  bool hasRows = false;
  double longestStep = 0.0;
  QObject::connect(preview.get(), &PinPreview::changed, &table, [&] {
    const double start = cpuMilliseconds();
    table.setPreview(preview.get(), wanted.limit);
    if (!hasRows && preview->rowCount() > 0) {
      hasRows = true;
      table.grab();
      fmt::print("first {} rows shown after {} ms\n", preview->rowCount(), timer.elapsed());
    }
    longestStep = std::max(longestStep, cpuMilliseconds() - start);
    if (preview->state() != PinPreview::State::computing) {
      QApplication::quit();
    }
  });
  QApplication::exec();
  fmt::print(
      "{} rows after {} ms, longest step {:.1f} ms; {:.0f} MiB above idle now, {:.0f} at most\n",
      preview->rowCount(), timer.elapsed(), longestStep, mebibytes("VmRSS") - idle,
      mebibytes("VmHWM") - idle);
  if (!preview->message().isEmpty()) {
    fmt::print("{}\n", preview->message().toStdString());
  }

  const auto await = [&](const char* what) {
    QElapsedTimer work;
    work.start();
    while (table.isOrdering()) {
      QApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
    }
    fmt::print("{} took {} ms; {:.0f} MiB above idle at most\n", what, work.elapsed(),
               mebibytes("VmHWM") - idle);
  };
  for (int column = 0; column < std::min(3, table.model().columnCount()); ++column) {
    emit table.header().sectionClicked(column);
    await("sorting");
  }
  QElapsedTimer profiling;
  profiling.start();
  int profiled = 0;
  const int columns = std::min(8, table.model().columnCount());
  while (profiled < columns) {
    profiled = 0;
    for (int column = 0; column < columns; ++column) {
      const ColumnProfile* profile = preview->profiles().profile(column);
      profiled += profile != nullptr && profile->rowCount == preview->rowCount() ? 1 : 0;
    }
    QApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
  }
  fmt::print("profiles of {} columns took {} ms; {:.0f} MiB above idle at most\n", columns,
             profiling.elapsed(), mebibytes("VmHWM") - idle);
  return 0;
}

}  // namespace
}  // namespace kelvarin

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  QApplication application(argc, argv);
  CLI::App program("Measures the preview of rows.");
  program.require_subcommand(1);

  kelvarin::RowsRequested wanted;
  auto* rows = program.add_subcommand("rows", "The rows of an action's first output pin");
  rows->add_option("graph", wanted.graph)->required();
  rows->add_option("action", wanted.action)->required();
  rows->add_option("--limit", wanted.limit);
  rows->add_option("--library", wanted.plugin);

  long long rowCount = 1'000'000;
  int columnCount = 1'000;
  int frames = 300;
  auto* scroll = program.add_subcommand("scroll", "Frames while a large table is scrolled");
  scroll->add_option("--rows", rowCount);
  scroll->add_option("--columns", columnCount);
  scroll->add_option("--frames", frames);

  CLI11_PARSE(program, argc, argv);
  return rows->parsed() ? kelvarin::rows(wanted) : kelvarin::scroll(rowCount, columnCount, frames);
}
