-- POST one cloud request (body and session from the environment) over and
-- over; replies are not parsed here so that wrk measures the server.
wrk.method = "POST"
wrk.path = "/cloud"
wrk.body = os.getenv("WRK_BODY")
wrk.headers["Content-Type"] = "application/json"
wrk.headers["X-Velora-Session"] = os.getenv("WRK_SESSION") or ""
