/* What the library's header shows to C alone; see IsoStreams.h. */
#include <stdint.h>
#include <stdlib.h>

#define LIBISOFS_WITHOUT_LIBBURN
#include <libisofs/libisofs.h>

IsoStream* newIsoStream(IsoStreamIface* calls, void* data);
void* dataOfIsoStream(const IsoStream* stream);

IsoStream* newIsoStream(IsoStreamIface* calls, void* data) {
  IsoStream* stream = calloc(1, sizeof(IsoStream));
  if (stream == NULL) return NULL;
  stream->class = calls;
  stream->refcount = 1;
  stream->data = data;
  return stream;
}

void* dataOfIsoStream(const IsoStream* stream) { return stream->data; }
