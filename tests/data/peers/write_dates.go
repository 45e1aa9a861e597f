// Writes each instant given on stdin ("seconds nanoseconds" per line) in Go's
// standard date layouts, in the zone of TZ: one "label<TAB>index<TAB>text"
// line per layout and instant. Run by tests/data/gen_software_dates.py.
package main

import (
	"bufio"
	"bytes"
	"fmt"
	"log"
	"os"
	"strings"
	"time"
)

// Go 1.19 lacks time.DateTime and time.DateOnly (added in 1.20); these are
// their layout strings.
const (
	dateTime = "2006-01-02 15:04:05"
	dateOnly = "2006-01-02"
	// What log.LstdFlags writes before a message; checked against the log
	// package below, which only ever writes the current time.
	logPrefix = "2006/01/02 15:04:05"
)

var layouts = []struct{ label, layout string }{
	{"go.UnixDate", time.UnixDate},
	{"go.RubyDate", time.RubyDate},
	{"go.ANSIC", time.ANSIC},
	{"go.RFC822", time.RFC822},
	{"go.RFC822Z", time.RFC822Z},
	{"go.RFC850", time.RFC850},
	{"go.RFC1123", time.RFC1123},
	{"go.RFC1123Z", time.RFC1123Z},
	{"go.RFC3339", time.RFC3339},
	{"go.RFC3339Nano", time.RFC3339Nano},
	{"go.DateTime", dateTime},
	{"go.DateOnly", dateOnly},
	{"go.log", logPrefix},
}

// Fails unless the log package's prefix is logPrefix of the same second.
func checkLogPrefix() {
	for {
		var buf bytes.Buffer
		before := time.Now().Truncate(time.Second)
		log.New(&buf, "", log.LstdFlags).Print("x")
		if time.Now().Truncate(time.Second).Equal(before) {
			if got, want := buf.String(), before.Format(logPrefix)+" x\n"; got != want {
				panic(fmt.Sprintf("log writes %q, layout gives %q", got, want))
			}
			return
		}
	}
}

func main() {
	checkLogPrefix()
	in := bufio.NewScanner(os.Stdin)
	out := bufio.NewWriter(os.Stdout)
	defer out.Flush()
	for i := 0; in.Scan(); i++ {
		var sec, nsec int64
		if _, err := fmt.Sscan(in.Text(), &sec, &nsec); err != nil {
			panic(err)
		}
		t := time.Unix(sec, nsec).In(time.Local)
		fmt.Fprintf(out, "go.String\t%d\t%s\n", i, t.String())
		for _, l := range layouts {
			text := t.Format(l.layout)
			if strings.ContainsAny(text, "\t\n") {
				panic(text)
			}
			fmt.Fprintf(out, "%s\t%d\t%s\n", l.label, i, text)
		}
	}
}
