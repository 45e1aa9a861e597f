// Reads one hex-encoded date text per line on stdin and writes, per line,
// what Go's net/mail.ParseDate makes of it: Unix seconds, or "-" for an error.
// Run by tests/data/gen_peer_dates.py.
package main

import (
	"bufio"
	"encoding/hex"
	"fmt"
	"net/mail"
	"os"
)

func main() {
	in := bufio.NewScanner(os.Stdin)
	in.Buffer(make([]byte, 1<<16), 1<<20)
	out := bufio.NewWriter(os.Stdout)
	defer out.Flush()
	for in.Scan() {
		text, err := hex.DecodeString(in.Text())
		if err != nil {
			panic(err)
		}
		if t, err := mail.ParseDate(string(text)); err != nil {
			fmt.Fprintln(out, "-")
		} else {
			fmt.Fprintln(out, t.Unix())
		}
	}
	if err := in.Err(); err != nil {
		panic(err)
	}
}
