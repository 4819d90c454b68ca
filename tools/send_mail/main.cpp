// SendMail.exe: hands one message to an SMTP server over STARTTLS, implicit TLS or, where the account says so, in
// clear. A program of its own, because the TLS of today's mail servers needs calls that the oldest systems lack, and
// there the panel must start all the same.
//
// The request comes on standard input as pairs of name and value, each closed by a NUL. On failure the reason goes to
// standard output and the exit code is not 0.
#include <winsock2.h>
// ahead of windows.h
#include <windows.h>
// behind both
#include <curl/curl.h>
#include <fcntl.h>
#include <io.h>
#include <stdio.h>
#include <stdlib.h>

#include <memory>
#include <string>
#include <vector>

#include "mime_text.h"
#include "platform/win32/wide.h"

namespace {

struct Request {
    std::string server, port, user, password, from, subject, text;
    std::vector<std::string> to, attachments;
    bool authenticate = false, useTls = false;
    long wait = 60;      // seconds; bound of every single wait
    bool whole = false;  // the request came to its end
};

Request ReadRequest() {
    _setmode(_fileno(stdin), _O_BINARY);
    std::string input;
    char block[4096];
    for (size_t count; (count = fread(block, 1, sizeof block, stdin)) > 0;) input.append(block, count);
    Request request;
    const std::pair<const char*, std::string*> texts[] = {{"server", &request.server}, {"port", &request.port},
                                                          {"user", &request.user},     {"password", &request.password},
                                                          {"from", &request.from},     {"subject", &request.subject},
                                                          {"text", &request.text}};
    for (size_t at = 0; at < input.size();) {
        std::string name = input.c_str() + at;
        at += name.size() + 1;
        std::string value = at < input.size() ? input.c_str() + at : "";
        at += value.size() + 1;
        for (const auto& [key, text] : texts)
            if (name == key) *text = value;
        if (name == "to") request.to.push_back(value);
        if (name == "attach") request.attachments.push_back(value);
        if (name == "authenticate") request.authenticate = value == "1";
        if (name == "tls") request.useTls = value == "1";
        if (name == "wait") request.wait = strtol(value.c_str(), nullptr, 10);
        if (name == "end") request.whole = value == "1";
    }
    return request;
}

struct CloseFile {
    void operator()(FILE* file) const { fclose(file); }
};
using OpenFile = std::unique_ptr<FILE, CloseFile>;

size_t ReadAttachment(char* buffer, size_t size, size_t count, void* file) {
    return fread(buffer, size, count, static_cast<FILE*>(file));
}

int SeekAttachment(void* file, curl_off_t offset, int origin) {
    return fseek(static_cast<FILE*>(file), static_cast<long>(offset), origin) ? CURL_SEEKFUNC_CANTSEEK
                                                                              : CURL_SEEKFUNC_OK;
}

// False when the file cannot be read: half a message is not sent.
bool Attach(curl_mime* mime, const std::string& path, std::vector<OpenFile>& files) {
    OpenFile file(_wfopen(pc::Wide(path).c_str(), L"rb"));
    if (!file || fseek(file.get(), 0, SEEK_END)) return false;
    long size = ftell(file.get());
    rewind(file.get());
    curl_mimepart* part = curl_mime_addpart(mime);
    curl_mime_data_cb(part, size, ReadAttachment, SeekAttachment, nullptr, file.get());
    curl_mime_filename(part, EncodedHeader(path.substr(path.find_last_of("\\/") + 1)).c_str());
    curl_mime_type(part, "application/octet-stream");
    curl_mime_encoder(part, "base64");
    files.push_back(std::move(file));
    return true;
}

void SetOptions(CURL* curl, const Request& request, const std::string& address) {
    curl_easy_setopt(curl, CURLOPT_URL, address.c_str());
    curl_easy_setopt(curl, CURLOPT_PROTOCOLS_STR, "smtp,smtps");
    curl_easy_setopt(curl, CURLOPT_USE_SSL, request.useTls ? long{CURLUSESSL_ALL} : long{CURLUSESSL_NONE});
    // The server's certificate must be valid, trusted and the host's. Lists of revoked ones are not asked for: they lie
    // on hosts that no setting names.
    curl_easy_setopt(curl, CURLOPT_SSL_OPTIONS, long{CURLSSLOPT_NO_REVOKE});
    curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT, request.wait);
    curl_easy_setopt(curl, CURLOPT_SERVER_RESPONSE_TIMEOUT, request.wait);
    curl_easy_setopt(curl, CURLOPT_LOW_SPEED_LIMIT, 1L);
    curl_easy_setopt(curl, CURLOPT_LOW_SPEED_TIME, request.wait);
    curl_easy_setopt(curl, CURLOPT_UPLOAD_BUFFERSIZE, 256L * 1024);  // for the pieces that attachments come in
    curl_easy_setopt(curl, CURLOPT_MAIL_FROM, AddressOf(request.from).c_str());
    if (!request.authenticate) return;
    curl_easy_setopt(curl, CURLOPT_USERNAME, request.user.c_str());
    curl_easy_setopt(curl, CURLOPT_PASSWORD, request.password.c_str());
}

// As curl_easy_perform does, but it waits with select: the library's own wait, for events, misses now and then that the
// server takes more, and then stands still for a second.
CURLcode Perform(CURL* curl) {
    std::unique_ptr<CURLM, CURLMcode (*)(CURLM*)> multi(curl_multi_init(), curl_multi_cleanup);
    curl_multi_add_handle(multi.get(), curl);
    for (int running = 1; running;) {
        if (curl_multi_perform(multi.get(), &running) != CURLM_OK) break;
        fd_set reading, writing, failed;
        for (fd_set* set : {&reading, &writing, &failed}) FD_ZERO(set);
        int last = -1;
        curl_multi_fdset(multi.get(), &reading, &writing, &failed, &last);
        timeval wait = {0, 100'000};  // microseconds; bounds need no finer clock
        if (last < 0)
            Sleep(10);  // it looks up a name, or is done
        else
            select(0, &reading, &writing, &failed, &wait);
    }
    int left = 0;
    const CURLMsg* done = curl_multi_info_read(multi.get(), &left);
    CURLcode code = done ? done->data.result : CURLE_FAILED_INIT;
    curl_multi_remove_handle(multi.get(), curl);
    return code;
}

std::string Send(const Request& request) {
    if (!request.whole) return "the request was cut";
    std::string address = ServerAddress(request.server, request.port, request.useTls);
    if (address.empty()) return "no server address: " + request.server + ":" + request.port;
    std::unique_ptr<CURL, void (*)(CURL*)> curl(curl_easy_init(), curl_easy_cleanup);
    std::vector<OpenFile> files;
    std::unique_ptr<curl_mime, void (*)(curl_mime*)> mime(curl_mime_init(curl.get()), curl_mime_free);
    curl_mimepart* body = curl_mime_addpart(mime.get());
    curl_mime_data(body, request.text.data(), request.text.size());
    curl_mime_type(body, "text/plain; charset=UTF-8");
    curl_mime_encoder(body, "quoted-printable");
    for (const std::string& path : request.attachments)
        if (!Attach(mime.get(), path, files)) return "can't read " + path;

    curl_slist *headers = nullptr, *receivers = nullptr;
    for (const std::string& header : MessageHeaders(request.from, request.to, request.subject))
        headers = curl_slist_append(headers, header.c_str());
    for (const std::string& receiver : request.to)
        receivers = curl_slist_append(receivers, AddressOf(receiver).c_str());
    SetOptions(curl.get(), request, address);
    curl_easy_setopt(curl.get(), CURLOPT_HTTPHEADER, headers);
    curl_easy_setopt(curl.get(), CURLOPT_MAIL_RCPT, receivers);
    curl_easy_setopt(curl.get(), CURLOPT_MIMEPOST, mime.get());
    char reason[CURL_ERROR_SIZE] = "";
    curl_easy_setopt(curl.get(), CURLOPT_ERRORBUFFER, reason);
    CURLcode code = Perform(curl.get());
    curl_slist_free_all(headers);
    curl_slist_free_all(receivers);
    return code == CURLE_OK ? "" : *reason ? reason : curl_easy_strerror(code);
}

}  // namespace

int main() {
    curl_global_init(CURL_GLOBAL_ALL);
    std::string failure = Send(ReadRequest());
    if (failure.empty()) return 0;
    fputs(failure.c_str(), stdout);
    return 1;
}
