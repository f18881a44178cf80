#include "search/SearchForms.h"

namespace trackloom {

SearchForms::SearchForms(Session& shared) : session(shared), frmSearch(session, *this) {}

SearchForms::~SearchForms() = default;

}  // namespace trackloom
