#include "uikit/richedit/html_parser.h"

#include <QHash>
#include <QStringList>
#include <algorithm>
#include <climits>

// The walk reads the HTML once, left to right, keeping no stack of open
// elements: a paste nested twenty thousand deep costs what a flat one of the
// same length costs. Lines come from where blocks begin and end and from
// breaks; text between them is collapsed the way a browser shows it.

namespace {

enum class TagKind {
  kInline,
  kBlock,
  kBreak,
  kImage,
  kPre,
  kHead,
  kBody,
  // Elements whose content is never shown: the walk jumps to their end tag.
  kHidden,
};

TagKind KindOf(QString const& name) {
  static const QHash<QString, TagKind> kinds = [] {
    QHash<QString, TagKind> k;
    for (char const* block :
         {"address", "article", "aside", "blockquote", "caption", "center", "dd",      "details", "dialog",
          "dir",     "div",     "dl",    "dt",         "fieldset", "figcaption", "figure", "footer", "form",
          "h1",      "h2",      "h3",    "h4",         "h5",      "h6",     "header", "hgroup", "hr",
          "legend",  "li",      "main",  "menu",       "nav",     "ol",     "p",      "section", "summary",
          "table",   "tbody",   "td",    "tfoot",      "th",      "thead",  "tr",     "ul"}) {
      k.insert(QLatin1String(block), TagKind::kBlock);
    }
    for (char const* hidden : {"script", "style", "title", "textarea", "noscript", "iframe", "noembed", "noframes",
                               "template", "xmp"}) {
      k.insert(QLatin1String(hidden), TagKind::kHidden);
    }
    k.insert(QStringLiteral("br"), TagKind::kBreak);
    k.insert(QStringLiteral("img"), TagKind::kImage);
    k.insert(QStringLiteral("pre"), TagKind::kPre);
    k.insert(QStringLiteral("listing"), TagKind::kPre);
    k.insert(QStringLiteral("head"), TagKind::kHead);
    k.insert(QStringLiteral("body"), TagKind::kBody);
    return k;
  }();
  return kinds.value(name, TagKind::kInline);
}

// The named character references pasted HTML actually carries.
uint NamedEntity(QString const& name) {
  static const QHash<QString, uint> entities = [] {
    const std::pair<char const*, uint> table[] = {
        {"amp", '&'},        {"lt", '<'},         {"gt", '>'},         {"quot", '"'},       {"apos", '\''},
        {"nbsp", 0xA0},      {"ensp", 0x2002},    {"emsp", 0x2003},    {"thinsp", 0x2009},  {"zwnj", 0x200C},
        {"zwj", 0x200D},     {"shy", 0xAD},       {"copy", 0xA9},      {"reg", 0xAE},       {"trade", 0x2122},
        {"hellip", 0x2026},  {"mdash", 0x2014},   {"ndash", 0x2013},   {"lsquo", 0x2018},   {"rsquo", 0x2019},
        {"sbquo", 0x201A},   {"ldquo", 0x201C},   {"rdquo", 0x201D},   {"bdquo", 0x201E},   {"laquo", 0xAB},
        {"raquo", 0xBB},     {"bull", 0x2022},    {"middot", 0xB7},    {"deg", 0xB0},       {"plusmn", 0xB1},
        {"times", 0xD7},     {"divide", 0xF7},    {"euro", 0x20AC},    {"pound", 0xA3},     {"yen", 0xA5},
        {"cent", 0xA2},      {"sect", 0xA7},      {"para", 0xB6},      {"iexcl", 0xA1},     {"iquest", 0xBF},
        {"larr", 0x2190},    {"rarr", 0x2192},    {"uarr", 0x2191},    {"darr", 0x2193},    {"check", 0x2713},
        {"frac12", 0xBD},    {"frac14", 0xBC},    {"frac34", 0xBE},    {"sup2", 0xB2},      {"sup3", 0xB3},
        {"micro", 0xB5},     {"agrave", 0xE0},    {"aacute", 0xE1},    {"acirc", 0xE2},     {"auml", 0xE4},
        {"ccedil", 0xE7},    {"egrave", 0xE8},    {"eacute", 0xE9},    {"ecirc", 0xEA},     {"euml", 0xEB},
        {"iacute", 0xED},    {"iuml", 0xEF},      {"ntilde", 0xF1},    {"oacute", 0xF3},    {"ocirc", 0xF4},
        {"ouml", 0xF6},      {"uacute", 0xFA},    {"uuml", 0xFC},      {"szlig", 0xDF},     {"Agrave", 0xC0},
        {"Aacute", 0xC1},    {"Auml", 0xC4},      {"Ccedil", 0xC7},    {"Eacute", 0xC9},    {"Ntilde", 0xD1},
        {"Ouml", 0xD6},      {"Uuml", 0xDC},      {"oslash", 0xF8},    {"aring", 0xE5},     {"aelig", 0xE6},
    };
    QHash<QString, uint> e;
    for (auto const& [entity, code] : table) e.insert(QLatin1String(entity), code);
    return e;
  }();
  return entities.value(name, 0);
}

bool IsHtmlSpace(QChar c) {
  const ushort u = c.unicode();
  return u == ' ' || u == '\t' || u == '\n' || u == '\r' || u == '\f';
}

bool IsAsciiAlpha(QChar c) {
  const ushort u = c.unicode();
  return (u >= 'a' && u <= 'z') || (u >= 'A' && u <= 'Z');
}

bool IsAsciiAlnum(QChar c) { return IsAsciiAlpha(c) || (c.unicode() >= '0' && c.unicode() <= '9'); }

void AppendCodePoint(uint code, QString* out) {
  if (code == 0 || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) code = QChar::ReplacementCharacter;
  if (QChar::requiresSurrogates(code)) {
    out->append(QChar(QChar::highSurrogate(code)));
    out->append(QChar(QChar::lowSurrogate(code)));
  } else {
    out->append(QChar(static_cast<ushort>(code)));
  }
}

// Decodes the character reference at `pos` (an "&") into `out` and returns
// where it ends, or returns `pos` when no reference starts there.
int DecodeEntity(QString const& html, int pos, int end, QString* out) {
  int i = pos + 1;
  if (i < end && html.at(i) == QLatin1Char('#')) {
    ++i;
    const bool hex = i < end && (html.at(i) == QLatin1Char('x') || html.at(i) == QLatin1Char('X'));
    if (hex) ++i;
    const auto digit = [hex](QChar c) -> int {
      const ushort u = c.unicode();
      if (u >= '0' && u <= '9') return u - '0';
      if (hex && u >= 'a' && u <= 'f') return u - 'a' + 10;
      if (hex && u >= 'A' && u <= 'F') return u - 'A' + 10;
      return -1;
    };
    const int digits_start = i;
    uint code = 0;
    for (; i < end && digit(html.at(i)) >= 0; ++i) {
      // A number too long for a code point reads on to its end and is replaced.
      code = i - digits_start < 8 ? code * (hex ? 16 : 10) + static_cast<uint>(digit(html.at(i))) : UINT_MAX;
    }
    if (i == digits_start) return pos;
    AppendCodePoint(code, out);
    if (i < end && html.at(i) == QLatin1Char(';')) ++i;
    return i;
  }
  const int name_start = i;
  while (i < end && i - name_start < 32 && IsAsciiAlnum(html.at(i))) ++i;
  if (i == name_start) return pos;
  const QString name = html.mid(name_start, i - name_start);
  const uint code = NamedEntity(name);
  if (!code) return pos;
  if (i < end && html.at(i) == QLatin1Char(';')) {
    AppendCodePoint(code, out);
    return i + 1;
  }
  // The oldest references are still written without their semicolon.
  static const QStringList legacy = {"amp", "lt", "gt", "quot", "nbsp", "copy", "reg"};
  if (!legacy.contains(name)) return pos;
  AppendCodePoint(code, out);
  return i;
}

QString DecodeText(QString const& html, int from, int to) {
  QString out;
  out.reserve(to - from);
  for (int i = from; i < to;) {
    if (html.at(i) == QLatin1Char('&')) {
      const int next = DecodeEntity(html, i, to, &out);
      if (next > i) {
        i = next;
        continue;
      }
    }
    out.append(html.at(i++));
  }
  return out;
}

}  // namespace

struct CHTMLWalker::State {
  QString html;
  CParserOut* out = nullptr;
  int pos = 0;
  int end = 0;
  bool finished = false;

  bool in_head = false;
  int pre_depth = 0;
  // A newline right after <pre> is the markup's, not the text's.
  bool skip_newline = false;

  // Something has been reported: breaks before the first content are dropped.
  bool started = false;
  // The current line holds nothing visible yet.
  bool line_blank = true;
  // Spaces that cannot collapse (no-break spaces, spaces in <pre>) on a line
  // that holds nothing else yet: kept if the line turns out to hold more.
  QString blank_prefix;
  // A run of collapsible white space waiting for what follows it.
  bool pending_space = false;
  // Line breaks owed before the next content; dropped at the end.
  int pending_breaks = 0;
  // The one owed break comes only from a block's end: an image that follows
  // stays on that block's line, as the editor's own HTML import places it.
  bool soft_break = false;
  QString text;

  void FlushText() {
    if (text.isEmpty()) return;
    out->OnParserText(text);
    text.clear();
  }

  void ResetLine() {
    line_blank = true;
    blank_prefix.clear();
    pending_space = false;
  }

  // Called before the first visible thing on a line.
  void BeginContent() {
    if (!line_blank) return;
    if (started && pending_breaks > 0) {
      FlushText();
      for (int i = 0; i < pending_breaks; ++i) out->OnParserLineBreak();
    }
    pending_breaks = 0;
    soft_break = false;
    text += blank_prefix;
    blank_prefix.clear();
    line_blank = false;
    started = true;
  }

  void HardBreak() {
    if (started) ++pending_breaks;
    soft_break = false;
    ResetLine();
  }

  void BlockBoundary(bool closing) {
    if (!line_blank) {
      pending_breaks = 1;
      soft_break = closing;
    } else if (!blank_prefix.isEmpty() && started) {
      // A paragraph of no-break spaces is an empty line the author meant.
      ++pending_breaks;
      soft_break = false;
    } else if (!closing) {
      soft_break = false;
    }
    ResetLine();
  }

  void Image(QString const& src) {
    if (line_blank && soft_break && pending_breaks == 1 && blank_prefix.isEmpty()) {
      pending_breaks = 0;
      soft_break = false;
      line_blank = false;
    }
    BeginContent();
    if (pending_space) text += QLatin1Char(' ');
    pending_space = false;
    FlushText();
    out->OnParserImage(src);
  }

  void Char(QChar c) {
    const ushort u = c.unicode();
    if (u == QChar::ObjectReplacementCharacter) return;
    if (pre_depth > 0) {
      if (skip_newline) {
        skip_newline = false;
        if (u == '\n') return;
      }
      if (u == '\r') return;
      if (u == '\n') {
        HardBreak();
        return;
      }
      if (u == ' ' || u == '\t' || u == QChar::Nbsp) {
        (line_blank ? blank_prefix : text) += u == '\t' ? QChar('\t') : QChar(' ');
        return;
      }
    } else {
      if (IsHtmlSpace(c)) {
        if (!line_blank || !blank_prefix.isEmpty()) pending_space = true;
        return;
      }
      if (u == QChar::Nbsp) {
        QString& into = line_blank ? blank_prefix : text;
        if (pending_space) into += QLatin1Char(' ');
        into += QLatin1Char(' ');
        pending_space = false;
        return;
      }
    }
    BeginContent();
    if (pending_space) text += QLatin1Char(' ');
    pending_space = false;
    text += c;
  }

  // Text up to the next tag, or up to `limit` characters of it.
  void StepText(int limit) {
    const int next_tag = html.indexOf(QLatin1Char('<'), pos);
    const int run_end = next_tag < 0 ? end : next_tag;
    int stop = run_end;
    if (run_end - pos > limit) {
      stop = pos + std::max(limit, 1);
      // Never cut a character reference or a surrogate pair in two. A
      // reference is "&", then "#" and digits or a name, then maybe ";"; its
      // digits may run on, so where it ends is asked of the decoder itself,
      // reading as far as the walk at once would.
      int k = stop - 1;
      while (k > pos && (IsAsciiAlnum(html.at(k)) || html.at(k) == QLatin1Char('#'))) --k;
      if (html.at(k) == QLatin1Char('&')) {
        QString scratch;
        const int reference_end = DecodeEntity(html, k, run_end, &scratch);
        if (reference_end == k) {
          // No reference, but cut short it might read as one ("&lt" of
          // "&lt1"): the "&" goes alone, as text.
          stop = k > pos ? k : k + 1;
        } else if (reference_end > stop) {
          stop = k > pos ? k : reference_end;
        }
      }
      if (stop < run_end && html.at(stop - 1).isHighSurrogate()) stop = stop - 1 > pos ? stop - 1 : stop + 1;
    }
    if (!in_head) {
      for (int i = pos; i < stop;) {
        if (html.at(i) == QLatin1Char('&')) {
          QString decoded;
          const int next = DecodeEntity(html, i, stop, &decoded);
          if (next > i) {
            for (QChar c : decoded) Char(c);
            i = next;
            continue;
          }
        }
        Char(html.at(i++));
      }
    }
    pos = stop;
  }

  // Past the next ">" (or to the end, for markup left open).
  void SkipPast(QLatin1String close, int from) {
    const int at = html.indexOf(close, from);
    pos = at < 0 ? end : at + close.size();
  }

  int TagNameEnd(int from) const {
    int i = from;
    while (i < end && !IsHtmlSpace(html.at(i)) && html.at(i) != QLatin1Char('>') && html.at(i) != QLatin1Char('/')) ++i;
    return i;
  }

  void StepMarkup() {
    const int next = pos + 1;
    if (next >= end) {
      Char(QLatin1Char('<'));
      pos = end;
      return;
    }
    const QChar c = html.at(next);
    if (c == QLatin1Char('!')) {
      if (html.midRef(pos, 4) == QLatin1String("<!--")) {
        SkipPast(QLatin1String("-->"), pos + 4);
      } else {
        SkipPast(QLatin1String(">"), next);
      }
      return;
    }
    if (c == QLatin1Char('?')) {
      SkipPast(QLatin1String(">"), next);
      return;
    }
    if (c == QLatin1Char('/')) {
      if (next + 1 < end && IsAsciiAlpha(html.at(next + 1))) {
        const int name_end = TagNameEnd(next + 1);
        const QString name = html.mid(next + 1, name_end - next - 1).toLower();
        SkipPast(QLatin1String(">"), name_end);
        EndTag(name);
      } else {
        SkipPast(QLatin1String(">"), next);
      }
      return;
    }
    if (!IsAsciiAlpha(c)) {
      // A "<" that opens no tag is text.
      Char(QLatin1Char('<'));
      pos = next;
      return;
    }
    const int name_end = TagNameEnd(next);
    const QString name = html.mid(next, name_end - next).toLower();
    const TagKind kind = KindOf(name);
    QString src;
    if (!ReadAttributes(name_end, kind == TagKind::kImage ? &src : nullptr)) {
      // Markup cut off before its ">" shows nothing.
      pos = end;
      return;
    }
    StartTag(name, kind, src);
  }

  // Reads a start tag's attributes up to its ">", keeping the source when
  // asked. False when the tag never closes.
  bool ReadAttributes(int from, QString* src) {
    int i = from;
    while (i < end) {
      const QChar c = html.at(i);
      if (c == QLatin1Char('>')) {
        pos = i + 1;
        return true;
      }
      if (IsHtmlSpace(c) || c == QLatin1Char('/')) {
        ++i;
        continue;
      }
      const int name_start = i;
      while (i < end && !IsHtmlSpace(html.at(i)) && html.at(i) != QLatin1Char('=') && html.at(i) != QLatin1Char('>') &&
             html.at(i) != QLatin1Char('/')) {
        ++i;
      }
      const bool is_src = src && html.midRef(name_start, i - name_start).compare(QLatin1String("src"),
                                                                                  Qt::CaseInsensitive) == 0;
      while (i < end && IsHtmlSpace(html.at(i))) ++i;
      if (i >= end || html.at(i) != QLatin1Char('=')) continue;
      ++i;
      while (i < end && IsHtmlSpace(html.at(i))) ++i;
      if (i >= end) return false;
      int value_start = i;
      int value_end;
      if (html.at(i) == QLatin1Char('"') || html.at(i) == QLatin1Char('\'')) {
        value_end = html.indexOf(html.at(i), i + 1);
        if (value_end < 0) return false;
        ++value_start;
        i = value_end + 1;
      } else {
        while (i < end && !IsHtmlSpace(html.at(i)) && html.at(i) != QLatin1Char('>')) ++i;
        value_end = i;
      }
      if (is_src) *src = DecodeText(html, value_start, value_end).trimmed();
    }
    return false;
  }

  void StartTag(QString const& name, TagKind kind, QString const& src) {
    switch (kind) {
      case TagKind::kHidden: {
        // Everything up to the element's own end tag, or to the end.
        const int close = html.indexOf(QLatin1String("</") + name, pos, Qt::CaseInsensitive);
        pos = close < 0 ? end : close;
        return;
      }
      case TagKind::kHead:
        if (!started) in_head = true;
        return;
      case TagKind::kBody:
        in_head = false;
        return;
      case TagKind::kBreak:
        HardBreak();
        return;
      case TagKind::kImage:
        Image(src);
        return;
      case TagKind::kPre:
        BlockBoundary(false);
        ++pre_depth;
        skip_newline = true;
        return;
      case TagKind::kBlock:
        BlockBoundary(false);
        return;
      case TagKind::kInline:
        return;
    }
  }

  void EndTag(QString const& name) {
    switch (KindOf(name)) {
      case TagKind::kHead:
        in_head = false;
        return;
      case TagKind::kBreak:
        HardBreak();
        return;
      case TagKind::kPre:
        BlockBoundary(true);
        pre_depth = std::max(0, pre_depth - 1);
        return;
      case TagKind::kBlock:
        BlockBoundary(true);
        return;
      default:
        return;
    }
  }
};

CHTMLWalker::CHTMLWalker(QString html, CParserOut* out) : d_(std::make_unique<State>()) {
  if (!out || !CHTMLParser::IsValidParser(html)) {
    d_->finished = true;
    return;
  }
  d_->html = std::move(html);
  d_->out = out;
  d_->end = d_->html.size();
}

CHTMLWalker::~CHTMLWalker() = default;

bool CHTMLWalker::Walk(int budget) {
  State& d = *d_;
  if (d.finished) return true;
  const int stop_at = budget >= d.end - d.pos ? d.end : d.pos + std::max(budget, 1);
  while (d.pos < d.end && d.pos < stop_at) {
    if (d.html.at(d.pos) == QLatin1Char('<')) {
      d.StepMarkup();
    } else {
      d.StepText(stop_at - d.pos);
    }
  }
  // Whatever the slice found is reported now; breaks still owed wait for
  // content, and are dropped at the end.
  d.FlushText();
  if (d.pos < d.end) return false;
  d.finished = true;
  d.html.clear();
  return true;
}

bool CHTMLWalker::AtEnd() const { return d_->finished; }

int CHTMLWalker::position() const { return d_->finished ? d_->end : d_->pos; }

int CHTMLWalker::size() const { return d_->end; }

bool CHTMLParser::IsValidParser(QString const& html) {
  if (html.isEmpty() || html.size() > kMaxHtmlLength) return false;
  return html.contains(QLatin1Char('<')) && html.contains(QLatin1Char('>'));
}

CHTMLParser::CHTMLParser(QString const& html, CParserOut* out) {
  CHTMLWalker walker(html, out);
  walker.Walk(INT_MAX);
}
