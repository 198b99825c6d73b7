"""What bench/report is made of: runs, the asked ratios, the page and its charts."""
