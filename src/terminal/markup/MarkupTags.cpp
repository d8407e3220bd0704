#include "terminal/markup/MarkupTags.h"

#include <algorithm>
#include <array>

namespace kelmora::terminal {

namespace markup {

namespace {

constexpr std::array<TagRow, tagCount> allowedTags{
    {{u"b", Kind::Inline},         {u"strong", Kind::Inline}, {u"i", Kind::Inline},
     {u"em", Kind::Inline},        {u"u", Kind::Inline},      {u"s", Kind::Inline},
     {u"del", Kind::Inline},       {u"big", Kind::Inline},    {u"small", Kind::Inline},
     {u"sub", Kind::Inline},       {u"sup", Kind::Inline},    {u"tt", Kind::Inline},
     {u"code", Kind::Inline},      {u"kbd", Kind::Inline},    {u"samp", Kind::Inline},
     {u"var", Kind::Inline},       {u"cite", Kind::Inline},   {u"dfn", Kind::Inline},
     {u"font", Kind::Inline},      {u"span", Kind::Inline},   {u"address", Kind::Inline},
     {u"nobr", Kind::Inline},      {u"a", Kind::Link},        {u"p", Kind::Paragraph},
     {u"li", Kind::Paragraph},     {u"dt", Kind::Term},       {u"dd", Kind::Term},
     {u"div", Kind::Block},        {u"center", Kind::Block},  {u"pre", Kind::Block},
     {u"h1", Kind::Block},         {u"h2", Kind::Block},      {u"h3", Kind::Block},
     {u"h4", Kind::Block},         {u"h5", Kind::Block},      {u"h6", Kind::Block},
     {u"ul", Kind::Block},         {u"ol", Kind::Block},      {u"dl", Kind::Block},
     {u"blockquote", Kind::Block}, {u"br", Kind::Void},       {u"hr", Kind::Void}}};

}  // namespace

const TagRow* rowNamed(QStringView name) {
  const auto found = std::find_if(
      allowedTags.begin(), allowedTags.end(),
      [name](const TagRow& row) { return row.name.compare(name, Qt::CaseInsensitive) == 0; });
  return found == allowedTags.end() ? nullptr : &*found;
}

std::size_t indexOf(const TagRow* row) {
  return static_cast<std::size_t>(row - allowedTags.data());
}

}  // namespace markup

}  // namespace kelmora::terminal
