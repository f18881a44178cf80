#pragma once

#include <curl/curl.h>

namespace trackloom::engines::discdb {

/// The functions of libcurl that are in use. It brings forty libraries along, which would take a fifth of the program's
/// start, so it is loaded when a server is asked for the first time, and never let go of, since a thread may still wait
/// for a name.
struct CurlLibrary {
  decltype(&::curl_global_init) globalInit;
  decltype(&::curl_easy_init) easyInit;
  decltype(&::curl_easy_cleanup) easyCleanup;
  decltype(&::curl_easy_setopt) easySetopt;
  decltype(&::curl_easy_perform) easyPerform;
  decltype(&::curl_easy_getinfo) easyGetinfo;
  decltype(&::curl_easy_strerror) easyStrerror;
  decltype(&::curl_easy_escape) easyEscape;
  decltype(&::curl_free) free;
  decltype(&::curl_url) url;
  decltype(&::curl_url_cleanup) urlCleanup;
  decltype(&::curl_url_get) urlGet;
  decltype(&::curl_url_set) urlSet;
};

/// Throws RuntimeError where the system has no such library, or one that lacks a function.
CurlLibrary loadCurl(const char* sharedObject);

/// The system's own, from any thread. Throws as loadCurl() does, and tries again at the next call.
const CurlLibrary& curl();

}  // namespace trackloom::engines::discdb
