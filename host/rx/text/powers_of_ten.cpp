#include "host/rx/text/powers_of_ten.h"

namespace gc {

const WidePower kPowersOfTen[] = {
#include "host/rx/text/powers_of_ten.inc"
};

}  // namespace gc
