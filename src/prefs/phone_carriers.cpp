#include "prefs/phone_carriers.h"

namespace tockwise {
namespace {

constexpr const char16_t* kCarriers[] = {
    u"txt.bell.ca (Bell, Canada)",
    u"sms.myboostmobile.com (Boost Mobile)",
    u"mailmymobile.net (Consumer Cellular)",
    u"sms.cricketwireless.net (Cricket)",
    u"fido.ca (Fido, Canada)",
    u"msg.fi.google.com (Google Fi)",
    u"msg.koodomobile.com (Koodo, Canada)",
    u"mymetropcs.com (Metro)",
    u"pcs.rogers.com (Rogers, Canada)",
    u"sms.sasktel.com (SaskTel, Canada)",
    u"msg.telus.com (Telus, Canada)",
    u"tmomail.net (T-Mobile)",
    u"email.uscc.net (UScellular)",
    u"vtext.com (Verizon)",
    u"vmobile.ca (Virgin Plus, Canada)",
    u"Unsure",
};

} // namespace

QStringList phoneCarriers() {
  QStringList carriers;
  for (const char16_t* carrier : kCarriers)
    carriers += QString::fromUtf16(carrier);
  return carriers;
}

} // namespace tockwise
