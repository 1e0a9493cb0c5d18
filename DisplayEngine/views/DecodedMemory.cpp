#include "views/DecodedMemory.h"

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace sorvane {

void DecodedMemory::returnLargeBuffersAtOnce()
{
#if defined(__GLIBC__)
    // A fixed threshold also stops glibc from raising it each time such a buffer is freed.
    mallopt(M_MMAP_THRESHOLD, 128 * 1024);
#endif
}

} // namespace sorvane
