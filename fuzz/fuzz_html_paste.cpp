// The walk over pasted HTML: any markup is reported, a slice at a time
// exactly as at once, and every slice moves the walk on.
#include <cstdio>
#include <QString>

#include "finding.h"
#include "fuzz_support.h"
#include "uikit/richedit/html_parser.h"

namespace {

class Transcript : public CParserOut {
 public:
  void OnParserImage(QString const& url) override { out += QStringLiteral("[img:") + url + QStringLiteral("]"); }
  void OnParserText(QString const& text) override { out += text; }
  void OnParserLineBreak() override { out += QLatin1Char('|'); }
  QString out;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
  if (size < 2) return 0;
  const int budget = 1 + data[0] % 64;
  // Odd second byte: the rest as raw UTF-16 (lone surrogates and all), as a
  // clipboard may hand it over; even: as UTF-8.
  QString html;
  if (data[1] & 1) {
    html = QString(reinterpret_cast<QChar const*>(data + 2), static_cast<int>((size - 2) / 2));
  } else {
    html = QString::fromUtf8(reinterpret_cast<char const*>(data + 2), static_cast<int>(size - 2));
  }

  Transcript whole;
  CHTMLParser(html, &whole);

  Transcript sliced;
  CHTMLWalker walker(html, &sliced);
  int calls = 0;
  for (bool done = false; !done; ++calls) {
    if (calls > html.size() + 1) {
      fuzz::Finding("the walk does not move on (budget %d)", budget);
    }
    done = walker.Walk(budget);
  }
  if (!walker.AtEnd() || walker.position() != walker.size()) {
    fuzz::Finding("the walk ended at %d of %d", walker.position(), walker.size());
  }
  fuzz::CheckEqual("walking in slices of " + std::to_string(budget) + " differs from walking at once",
                   whole.out.toStdString(), sliced.out.toStdString());
  return 0;
}
