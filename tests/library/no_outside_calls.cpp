// Where the calls between two libraries cannot be replaced, nothing stands between them.
#include "library/outside_calls.h"

namespace ketra::test {

thread_local OutsideCalls outside;

}  // namespace ketra::test
