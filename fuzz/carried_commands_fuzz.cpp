#include "fuzz_input.h"
#include "mail/inspection/calendar_actions.h"
#include "mail/inspection/office_part.h"
#include "mail/inspection/pdf_actions.h"
#include "mail/inspection/table_formulas.h"

using namespace vorn;

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const QByteArray bytes = fuzz::Bytes(data, size).toByteArray();
  const LookBound bound(nullptr);
  ActsOfPdf(bytes);
  OfficePart part(bound);
  part.Add(bytes.first(bytes.size() / 3));
  part.Add(bytes.sliced(bytes.size() / 3));
  part.Holds();
  HasFormula(QString::fromUtf8(bytes));
  StartsPrograms(QString::fromUtf8(bytes));
  // A script is found whatever stands before it, unless that is found first.
  fuzz::Require(ActsOfPdf(bytes + "\n/S/J#61vaScript ") != PdfActs::Nothing);
  return 0;
}
