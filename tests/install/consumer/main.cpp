#include "kestan/core/library.h"

int main() {
  vorrel::kestan::GInitialize();
  const bool up = vorrel::kestan::GIsInitialized();
  vorrel::kestan::GShutdown();
  return up ? 0 : 1;
}
