// Looking into attachments: what it takes until a large one may open.
//
//   attachment-bench
#include <QCoreApplication>
#include <QXmlStreamReader>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

#include "bench_support.h"
#include "mail/file_kind.h"
#include "mail/inspection/office_part.h"

using namespace vorn;

namespace {

constexpr int kRuns = 7;
constexpr int kRows = 40000;
constexpr int kColumns = 10;

// A sheet as spreadsheets write it, a third of it formulas.
QByteArray Sheet() {
  QByteArray sheet = "<worksheet xmlns='http://schemas.openxmlformats.org/main'><sheetData>";
  for (int row = 1; row <= kRows; ++row) {
    const QByteArray number = QByteArray::number(row);
    sheet += "<row r='" + number + "'>";
    for (int column = 0; column < kColumns; ++column) {
      sheet += "<c r='" + QByteArray(1, char('A' + column)) + number + "' s='1'>";
      if (column % 3 == 0) sheet += "<f>SUM(A" + number + ":B" + number + ")</f>";
      sheet += "<v>" + QByteArray::number(row * 7919 % 1000003) + "</v></c>";
    }
    sheet += "</row>";
  }
  return sheet + "</sheetData></worksheet>";
}

void Report(const char* what, qsizetype bytes, const std::function<void()>& run) {
  std::vector<double> times;
  for (int i = 0; i < kRuns; ++i) {
    QElapsedTimer clock;
    clock.start();
    run();
    times.push_back(bench::Milliseconds(clock));
  }
  std::nth_element(times.begin(), times.begin() + kRuns / 2, times.end());
  const double median = times[kRuns / 2];
  std::printf("%-34s %6.1f MB %8.1f ms %7.1f MB/s\n", what, double(bytes) / 1e6, median,
              double(bytes) / 1e3 / median);
}

// The peer: only reads, and looks at nothing.
void ReadByToolkit(const QByteArray& part) {
  QXmlStreamReader reader(part);
  while (!reader.atEnd()) reader.readNext();
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const QByteArray sheet = Sheet();
  Report("sheet, looked into", sheet.size(), [&] {
    const LookBound bound(nullptr);
    OfficePart part(bound);
    part.Add(sheet);
    bench::Require(part.Holds() == OfficeHolds::Nothing, QStringLiteral("it acts"));
  });
  Report("sheet, the toolkit's reader alone", sheet.size(), [&] { ReadByToolkit(sheet); });
  const QByteArray table = QByteArray("1,2,abc\r\n").repeated(2'000'000);
  Report("table of text", table.size(), [&] { KindOfFile(QStringLiteral("a.csv"), table); });
  const QByteArray pdf =
      "%PDF-1.4\n" + QByteArray("1 0 obj<</Type/Page/Annots[4 0 R]>>endobj\n").repeated(450'000);
  Report("PDF file", pdf.size(), [&] { KindOfFile(QStringLiteral("a.pdf"), pdf); });
  return 0;
}
