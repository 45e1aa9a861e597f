long long pluginRoundTrip(long long unixTime);

int main() { return pluginRoundTrip(1709802303) == 1709802303 ? 0 : 1; }
