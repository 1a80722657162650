// Errors and files as HTTP responses.
#pragma once

#include "serve/tray/page_store.h"

#include <httplib.h>

#include <exception>
#include <string>

namespace doccam::serve {

// {"error": reason}
void answerError(httplib::Response& response, int status, const std::string& reason);

// The response to an exception from a handler.
void answerException(const httplib::Request& request, httplib::Response& response,
                     std::exception_ptr error);

// A page's picture, its thumbnail, a document; 404 if there is none. The document's file is
// removed.
void answerPage(httplib::Response& response, const PageStore& pages, int id);
void answerThumbnail(httplib::Response& response, const PageStore& pages, int id);
void answerDocument(httplib::Response& response, const std::string& path);

} // namespace doccam::serve
