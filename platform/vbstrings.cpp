// Blank trimming, fixed-length texts and the Like operator.
#include "platform/vbformat.h"

#include <QDateTime>
#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace kw {

// ---------------------------------------------------------------------------------------------
// Strings

QString vbTrim(const QString &text) { return vbLTrim(vbRTrim(text)); }

QString vbLTrim(const QString &text)
{
    qsizetype i = 0;
    while (i < text.size() && text[i] == QLatin1Char(' '))
        ++i;
    return text.mid(i);
}

QString vbRTrim(const QString &text)
{
    qsizetype n = text.size();
    while (n > 0 && text[n - 1] == QLatin1Char(' '))
        --n;
    return text.left(n);
}

QString vbFixed(const QString &text, int length)
{
    if (length <= 0)
        return {};
    if (text.size() >= length)
        return text.left(length);
    return text + QString(length - text.size(), QLatin1Char(' '));
}

namespace {

struct LikeItem {
    enum Kind : uint8_t { Star, Any, Digit, Char, Set } kind;
    bool negate = false;
    char16_t ch = 0;
    std::vector<std::pair<char16_t, char16_t>> ranges;
};

std::vector<LikeItem> parseLike(QStringView pattern)
{
    std::vector<LikeItem> items;
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        const char16_t c = pattern[i].unicode();
        if (c == u'*') {
            if (items.empty() || items.back().kind != LikeItem::Star)
                items.push_back({LikeItem::Star});
        } else if (c == u'?') {
            items.push_back({LikeItem::Any});
        } else if (c == u'#') {
            items.push_back({LikeItem::Digit});
        } else if (c == u'[' && pattern.indexOf(u']', i + 1) > i) {
            const qsizetype close = pattern.indexOf(u']', i + 1);
            LikeItem set{LikeItem::Set};
            qsizetype j = i + 1;
            if (j < close && pattern[j] == u'!') {
                set.negate = true;
                ++j;
            }
            if (j == close && !set.negate) {
                i = close;  // "[]" matches the empty string
                continue;
            }
            for (; j < close; ++j) {
                const char16_t lo = pattern[j].unicode();
                if (j + 2 < close && pattern[j + 1] == u'-') {
                    set.ranges.push_back({lo, pattern[j + 2].unicode()});
                    j += 2;
                } else {
                    set.ranges.push_back({lo, lo});
                }
            }
            items.push_back(std::move(set));
            i = close;
        } else {
            items.push_back({LikeItem::Char, false, c});
        }
    }
    return items;
}

bool inSet(const LikeItem &set, char16_t c)
{
    for (const auto &[lo, hi] : set.ranges) {
        if (c >= lo && c <= hi)
            return true;
    }
    return false;
}

bool matchesOne(const LikeItem &item, QChar c, bool caseSensitive)
{
    switch (item.kind) {
    case LikeItem::Any:
        return true;
    case LikeItem::Digit:
        return c >= QLatin1Char('0') && c <= QLatin1Char('9');
    case LikeItem::Char:
        return caseSensitive ? c.unicode() == item.ch
                             : c.toCaseFolded() == QChar(item.ch).toCaseFolded();
    case LikeItem::Set: {
        bool hit = inSet(item, c.unicode());
        if (!hit && !caseSensitive)
            hit = inSet(item, c.toLower().unicode()) || inSet(item, c.toUpper().unicode());
        return hit != item.negate;
    }
    case LikeItem::Star:
        break;
    }
    return false;
}

}  // namespace

bool vbLike(const QString &text, const QString &pattern, bool caseSensitive)
{
    const std::vector<LikeItem> items = parseLike(pattern);
    // Every item but * takes exactly one character, so a star needs only its last position
    // remembered: on a mismatch it swallows one more character and matching resumes behind it.
    size_t pi = 0;
    qsizetype ti = 0;
    size_t starItem = SIZE_MAX;
    qsizetype starText = 0;
    while (ti < text.size()) {
        if (pi < items.size() && items[pi].kind == LikeItem::Star) {
            starItem = pi++;
            starText = ti;
        } else if (pi < items.size() && matchesOne(items[pi], text[ti], caseSensitive)) {
            ++pi;
            ++ti;
        } else if (starItem != SIZE_MAX) {
            pi = starItem + 1;
            ti = ++starText;
        } else {
            return false;
        }
    }
    while (pi < items.size() && items[pi].kind == LikeItem::Star)
        ++pi;
    return pi == items.size();
}

}  // namespace kw
