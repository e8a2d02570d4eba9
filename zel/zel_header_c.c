/* The interface header alone, as C. */
#include "zel/zel.h"

/* Not before the header, which needs nothing else. */
#include "zel/zel_header_facts.h"

zel_facts zel_facts_of_c(void);

zel_facts zel_facts_of_c(void) {
  return all_zel_facts();
}
