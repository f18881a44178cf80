#include "engines/discdb/CurlLibrary.h"

#include <dlfcn.h>

#include <string>

#include "runtime/RuntimeError.h"

namespace trackloom::engines::discdb {

namespace {

void* require(void* found) {
  if (found == nullptr) throw RuntimeError(RuntimeError::DeviceIoError, std::string("The web library: ") + ::dlerror());
  return found;
}

template <class Function>
void find(void* library, const char* name, Function*& function) {
  function = reinterpret_cast<Function*>(require(::dlsym(library, name)));
}

}  // namespace

CurlLibrary loadCurl(const char* sharedObject) {
  void* const library = require(::dlopen(sharedObject, RTLD_LAZY | RTLD_LOCAL));
  CurlLibrary curl{};
  find(library, "curl_global_init", curl.globalInit);
  find(library, "curl_easy_init", curl.easyInit);
  find(library, "curl_easy_cleanup", curl.easyCleanup);
  find(library, "curl_easy_setopt", curl.easySetopt);
  find(library, "curl_easy_perform", curl.easyPerform);
  find(library, "curl_easy_getinfo", curl.easyGetinfo);
  find(library, "curl_easy_strerror", curl.easyStrerror);
  find(library, "curl_easy_escape", curl.easyEscape);
  find(library, "curl_free", curl.free);
  find(library, "curl_url", curl.url);
  find(library, "curl_url_cleanup", curl.urlCleanup);
  find(library, "curl_url_get", curl.urlGet);
  find(library, "curl_url_set", curl.urlSet);
  curl.globalInit(CURL_GLOBAL_NOTHING);
  return curl;
}

const CurlLibrary& curl() {
  static const CurlLibrary library = loadCurl("libcurl.so.4");
  return library;
}

}  // namespace trackloom::engines::discdb
