// The named characters of HTML 4, and the apostrophe.
#include "richtext/formats/html_tokens.h"

#include <algorithm>
#include <iterator>

namespace tockwise {
namespace {

struct NamedCharacter {
  QStringView name;
  char16_t character;
};

// In the order of their names.
constexpr NamedCharacter kNamed[] = {
    {u"AElig", 0x00c6},   {u"Aacute", 0x00c1},  {u"Acirc", 0x00c2},    {u"Agrave", 0x00c0},
    {u"Alpha", 0x0391},   {u"Aring", 0x00c5},   {u"Atilde", 0x00c3},   {u"Auml", 0x00c4},
    {u"Beta", 0x0392},    {u"Ccedil", 0x00c7},  {u"Chi", 0x03a7},      {u"Dagger", 0x2021},
    {u"Delta", 0x0394},   {u"ETH", 0x00d0},     {u"Eacute", 0x00c9},   {u"Ecirc", 0x00ca},
    {u"Egrave", 0x00c8},  {u"Epsilon", 0x0395}, {u"Eta", 0x0397},      {u"Euml", 0x00cb},
    {u"Gamma", 0x0393},   {u"Iacute", 0x00cd},  {u"Icirc", 0x00ce},    {u"Igrave", 0x00cc},
    {u"Iota", 0x0399},    {u"Iuml", 0x00cf},    {u"Kappa", 0x039a},    {u"Lambda", 0x039b},
    {u"Mu", 0x039c},      {u"Ntilde", 0x00d1},  {u"Nu", 0x039d},       {u"OElig", 0x0152},
    {u"Oacute", 0x00d3},  {u"Ocirc", 0x00d4},   {u"Ograve", 0x00d2},   {u"Omega", 0x03a9},
    {u"Omicron", 0x039f}, {u"Oslash", 0x00d8},  {u"Otilde", 0x00d5},   {u"Ouml", 0x00d6},
    {u"Phi", 0x03a6},     {u"Pi", 0x03a0},      {u"Prime", 0x2033},    {u"Psi", 0x03a8},
    {u"Rho", 0x03a1},     {u"Scaron", 0x0160},  {u"Sigma", 0x03a3},    {u"THORN", 0x00de},
    {u"Tau", 0x03a4},     {u"Theta", 0x0398},   {u"Uacute", 0x00da},   {u"Ucirc", 0x00db},
    {u"Ugrave", 0x00d9},  {u"Upsilon", 0x03a5}, {u"Uuml", 0x00dc},     {u"Xi", 0x039e},
    {u"Yacute", 0x00dd},  {u"Yuml", 0x0178},    {u"Zeta", 0x0396},     {u"aacute", 0x00e1},
    {u"acirc", 0x00e2},   {u"acute", 0x00b4},   {u"aelig", 0x00e6},    {u"agrave", 0x00e0},
    {u"alefsym", 0x2135}, {u"alpha", 0x03b1},   {u"amp", 0x0026},      {u"and", 0x2227},
    {u"ang", 0x2220},     {u"apos", 0x0027},    {u"aring", 0x00e5},    {u"asymp", 0x2248},
    {u"atilde", 0x00e3},  {u"auml", 0x00e4},    {u"bdquo", 0x201e},    {u"beta", 0x03b2},
    {u"brvbar", 0x00a6},  {u"bull", 0x2022},    {u"cap", 0x2229},      {u"ccedil", 0x00e7},
    {u"cedil", 0x00b8},   {u"cent", 0x00a2},    {u"chi", 0x03c7},      {u"circ", 0x02c6},
    {u"clubs", 0x2663},   {u"cong", 0x2245},    {u"copy", 0x00a9},     {u"crarr", 0x21b5},
    {u"cup", 0x222a},     {u"curren", 0x00a4},  {u"dArr", 0x21d3},     {u"dagger", 0x2020},
    {u"darr", 0x2193},    {u"deg", 0x00b0},     {u"delta", 0x03b4},    {u"diams", 0x2666},
    {u"divide", 0x00f7},  {u"eacute", 0x00e9},  {u"ecirc", 0x00ea},    {u"egrave", 0x00e8},
    {u"empty", 0x2205},   {u"emsp", 0x2003},    {u"ensp", 0x2002},     {u"epsilon", 0x03b5},
    {u"equiv", 0x2261},   {u"eta", 0x03b7},     {u"eth", 0x00f0},      {u"euml", 0x00eb},
    {u"euro", 0x20ac},    {u"exist", 0x2203},   {u"fnof", 0x0192},     {u"forall", 0x2200},
    {u"frac12", 0x00bd},  {u"frac14", 0x00bc},  {u"frac34", 0x00be},   {u"frasl", 0x2044},
    {u"gamma", 0x03b3},   {u"ge", 0x2265},      {u"gt", 0x003e},       {u"hArr", 0x21d4},
    {u"harr", 0x2194},    {u"hearts", 0x2665},  {u"hellip", 0x2026},   {u"iacute", 0x00ed},
    {u"icirc", 0x00ee},   {u"iexcl", 0x00a1},   {u"igrave", 0x00ec},   {u"image", 0x2111},
    {u"infin", 0x221e},   {u"int", 0x222b},     {u"iota", 0x03b9},     {u"iquest", 0x00bf},
    {u"isin", 0x2208},    {u"iuml", 0x00ef},    {u"kappa", 0x03ba},    {u"lArr", 0x21d0},
    {u"lambda", 0x03bb},  {u"lang", 0x2329},    {u"laquo", 0x00ab},    {u"larr", 0x2190},
    {u"lceil", 0x2308},   {u"ldquo", 0x201c},   {u"le", 0x2264},       {u"lfloor", 0x230a},
    {u"lowast", 0x2217},  {u"loz", 0x25ca},     {u"lrm", 0x200e},      {u"lsaquo", 0x2039},
    {u"lsquo", 0x2018},   {u"lt", 0x003c},      {u"macr", 0x00af},     {u"mdash", 0x2014},
    {u"micro", 0x00b5},   {u"middot", 0x00b7},  {u"minus", 0x2212},    {u"mu", 0x03bc},
    {u"nabla", 0x2207},   {u"nbsp", 0x00a0},    {u"ndash", 0x2013},    {u"ne", 0x2260},
    {u"ni", 0x220b},      {u"not", 0x00ac},     {u"notin", 0x2209},    {u"nsub", 0x2284},
    {u"ntilde", 0x00f1},  {u"nu", 0x03bd},      {u"oacute", 0x00f3},   {u"ocirc", 0x00f4},
    {u"oelig", 0x0153},   {u"ograve", 0x00f2},  {u"oline", 0x203e},    {u"omega", 0x03c9},
    {u"omicron", 0x03bf}, {u"oplus", 0x2295},   {u"or", 0x2228},       {u"ordf", 0x00aa},
    {u"ordm", 0x00ba},    {u"oslash", 0x00f8},  {u"otilde", 0x00f5},   {u"otimes", 0x2297},
    {u"ouml", 0x00f6},    {u"para", 0x00b6},    {u"part", 0x2202},     {u"permil", 0x2030},
    {u"perp", 0x22a5},    {u"phi", 0x03c6},     {u"pi", 0x03c0},       {u"piv", 0x03d6},
    {u"plusmn", 0x00b1},  {u"pound", 0x00a3},   {u"prime", 0x2032},    {u"prod", 0x220f},
    {u"prop", 0x221d},    {u"psi", 0x03c8},     {u"quot", 0x0022},     {u"rArr", 0x21d2},
    {u"radic", 0x221a},   {u"rang", 0x232a},    {u"raquo", 0x00bb},    {u"rarr", 0x2192},
    {u"rceil", 0x2309},   {u"rdquo", 0x201d},   {u"real", 0x211c},     {u"reg", 0x00ae},
    {u"rfloor", 0x230b},  {u"rho", 0x03c1},     {u"rlm", 0x200f},      {u"rsaquo", 0x203a},
    {u"rsquo", 0x2019},   {u"sbquo", 0x201a},   {u"scaron", 0x0161},   {u"sdot", 0x22c5},
    {u"sect", 0x00a7},    {u"shy", 0x00ad},     {u"sigma", 0x03c3},    {u"sigmaf", 0x03c2},
    {u"sim", 0x223c},     {u"spades", 0x2660},  {u"sub", 0x2282},      {u"sube", 0x2286},
    {u"sum", 0x2211},     {u"sup", 0x2283},     {u"sup1", 0x00b9},     {u"sup2", 0x00b2},
    {u"sup3", 0x00b3},    {u"supe", 0x2287},    {u"szlig", 0x00df},    {u"tau", 0x03c4},
    {u"there4", 0x2234},  {u"theta", 0x03b8},   {u"thetasym", 0x03d1}, {u"thinsp", 0x2009},
    {u"thorn", 0x00fe},   {u"tilde", 0x02dc},   {u"times", 0x00d7},    {u"trade", 0x2122},
    {u"uArr", 0x21d1},    {u"uacute", 0x00fa},  {u"uarr", 0x2191},     {u"ucirc", 0x00fb},
    {u"ugrave", 0x00f9},  {u"uml", 0x00a8},     {u"upsih", 0x03d2},    {u"upsilon", 0x03c5},
    {u"uuml", 0x00fc},    {u"weierp", 0x2118},  {u"xi", 0x03be},       {u"yacute", 0x00fd},
    {u"yen", 0x00a5},     {u"yuml", 0x00ff},    {u"zeta", 0x03b6},     {u"zwj", 0x200d},
    {u"zwnj", 0x200c},
};

} // namespace

char32_t namedCharacter(QStringView name) {
  const auto* found = std::lower_bound(
      std::begin(kNamed), std::end(kNamed), name,
      [](const NamedCharacter& each, QStringView wanted) { return each.name < wanted; });
  return found != std::end(kNamed) && found->name == name ? found->character : 0;
}

} // namespace tockwise
