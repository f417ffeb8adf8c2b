// A stand-in for the Velmora website, with the endpoints that Hardware Detector uses. It has no socket: it maps a
// request to an answer.
//
//   POST /save-detected-hardware/           stores a machine and answers {"success": true, "hardware_id": N,
//                                           "redirect_url": "/detected-hardware/"}
//   POST /api/track-install/                {"created": true}, or {"created": false} for a device known already
//   POST /api/track-usage/                  {"success": true}
//   GET  /detected-hardware/?hardware_id=N  the page of a stored machine
//   GET  /                                  all that was stored and reported
//
// It is strict, to show mistakes of the program: a posted body must be a JSON object with exactly the members of its
// endpoint, sent as application/json (otherwise 400). Paths are compared byte for byte, so a doubled slash or an
// escaped letter gives 404. Every answer that is no page is a JSON object; a refusal is {"success": false, "error": "a
// sentence"}.
#pragma once

#include <mutex>
#include <string>
#include <string_view>

#include "website_stand_in/records.h"

namespace websiteStandIn {

class PostedObject;

struct WebRequest {
    std::string method;
    std::string target;       // Path and query as the request line has them.
    std::string contentType;  // The field's whole value, empty when there is none.
    std::string body;
};

struct WebAnswer {
    int status = 200;
    std::string contentType;
    std::string body;
    std::string allow = {};  // The value of the field Allow, with status 405 alone.
};

// An answer with status `status` and the JSON of a refusal.
[[nodiscard]] WebAnswer refusal(int status, const std::string& sentence);

// Safe from any thread.
class Website {
  public:
    // HEAD gets the same answer as GET; the server leaves out the body.
    [[nodiscard]] WebAnswer answerTo(const WebRequest& request);

  private:
    using Action = WebAnswer (Website::*)(PostedObject&);

    WebAnswer answerToPost(const WebRequest& request, Action action);
    WebAnswer saveDetectedHardware(PostedObject& posted);
    WebAnswer trackInstall(PostedObject& posted);
    WebAnswer trackUsage(PostedObject& posted);
    [[nodiscard]] WebAnswer detectedHardware(std::string_view target) const;

    std::mutex mutex_;
    Records records_;
};

}  // namespace websiteStandIn
