#include <telephony.h>

#include "fakes/journal.hpp"

gint TelTapiSimGetCardType(gint *card_type) {
  fake::record("TelTapiSimGetCardType");
  return fake::platform().TelTapiSimGetCardType(card_type);
}
