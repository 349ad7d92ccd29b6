// Builds without the network library have no page.
#ifndef GC_HAVE_BEAST
#include "cli/page/pageserver.h"

namespace cli::page {

bool PageServer::exists() { return false; }

std::unique_ptr<PageServer> PageServer::start(uint16_t, Client&, std::string& reason) {
  reason = "this build has no page: Boost.Beast was not found when it was configured";
  return nullptr;
}

}  // namespace cli::page
#endif
