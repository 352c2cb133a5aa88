#include "kestan/core/kestan.h"

int main() {
  vorrel::kestan::GInitialize();
  const bool up = vorrel::kestan::GIsInitialized();
  vorrel::kestan::GShutdown();
  return up ? 0 : 1;
}
